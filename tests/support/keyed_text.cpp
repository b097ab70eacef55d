#include "support/keyed_text.h"

namespace bvconn::test {

std::string test_name(std::string_view claim) {
  std::string name;
  for (const char c : claim) {
    const bool kept = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    name.push_back(kept ? c : '_');
  }
  return name;
}

}  // namespace bvconn::test
