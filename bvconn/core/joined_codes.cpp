#include "bvconn/core/joined_codes.h"

#include "bvconn/platform/conversions/conversions.h"

namespace bvconn {

std::string joined_codes(const std::vector<std::string>& codes) {
  std::string text;
  for (const std::string& code : codes) {
    if (&code != &codes.front()) text += ';';
    text += conversions::trim_blanks(code);
  }
  return text;
}

}  // namespace bvconn
