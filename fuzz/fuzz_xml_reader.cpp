#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzzing.h"
#include "xml/expat_oracle.h"

namespace {

void check(const char* what, const std::string& difference) {
  bvconn::fuzz::require(difference.empty(), what, difference);
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
