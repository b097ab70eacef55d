#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "xml/expat_oracle.h"

namespace {

void check(const char* what, const std::string& difference) {
  if (difference.empty()) return;
  std::fprintf(stderr, "%s: %s\n", what, difference.c_str());
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  check("detected", xml_oracle::compare_bytes(bytes));
  // expat follows a byte-order mark, or `<` beside a zero byte, even when told that it is UTF-8.
  const bool shows_utf16 = size >= 2 && (data[0] == 0 || data[1] == 0 || data[0] >= 0xFE);
  if (!shows_utf16) check("as UTF-8", xml_oracle::compare_utf8(bytes));
  return 0;
}
