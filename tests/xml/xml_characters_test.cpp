#include "bvconn/platform/xml/xml_characters.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace bvconn::detail::xml {
namespace {

using Ranges = std::vector<std::pair<char32_t, char32_t>>;

// NameStartChar of XML 1.0, fifth edition, without the colon, which Namespaces takes out.
const Ranges kBeginnings{{'A', 'Z'},       {'_', '_'},       {'a', 'z'},        {0xC0, 0xD6},
                         {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},    {0x37F, 0x1FFF},
                         {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},  {0x3001, 0xD7FF},
                         {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};
// What NameChar adds.
const Ranges kContinuations{{'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

bool is_in(const Ranges& ranges, char32_t c) {
  for (const auto& [first, last] : ranges) {
    if (c >= first && c <= last) return true;
  }
  return false;
}

TEST(XmlNames, HoldTheCharactersOfTheStandardUpToTheirEdges) {
  for (char32_t c = 0x21; c < 0x110000; ++c) {
    const bool begins = is_in(kBeginnings, c);
    ASSERT_EQ(begins_name(c), begins) << std::uint32_t{c};
    ASSERT_EQ(in_name(c), begins || is_in(kContinuations, c)) << std::uint32_t{c};
  }
}

}  // namespace
}  // namespace bvconn::detail::xml
