// Start tags that come again leave no trace in what the reader says of a document: what expat says
// of it stays the same.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "xml/document_generator.h"
#include "xml/expat_oracle.h"

namespace {

/// Documents that hold a few tags again and again, as replies do, with every content.
std::string repeating_document(std::uint32_t seed) {
  static constexpr std::string_view kTags[] = {"a",
                                               "p:row",
                                               "a b='1'",
                                               "a xsi='>'",
                                               "p:a p:b='2'",
                                               "b xmlns:p='v'",
                                               "b xmlns='u'",
                                               "q:c xmlns:q='w' q:d='&amp;'",
                                               "long-name-of-an-element x='1234567890123456'"};
  static constexpr std::string_view kContents[] = {"",
                                                   "1",
                                                   "some words of text, longer than a vector",
                                                   "x &amp; y",
                                                   "<![CDATA[z]]>",
                                                   "\r\n",
                                                   "\n    ",
                                                   "<!-- n -->",
                                                   "x]]y",
                                                   "x]",
                                                   "\xC3\xA9\xE2\x82\xAC",
                                                   "<?t?>1"};
  Dice dice(seed);
  std::string text = "<r xmlns:p='u'>";
  std::vector<std::string> open;
  for (std::size_t parts = 10 + dice.below(60); parts > 0; --parts) {
    const std::string_view tag = dice.pick(kTags);
    text += "<" + std::string(tag);
    if (dice.one_in(4)) {
      text += "/>";
    } else {
      text += ">";
      text += dice.pick(kContents);
      open.emplace_back(tag.substr(0, tag.find(' ')));
    }
    while (!open.empty() && !dice.one_in(4)) {
      text += "</" + open.back() + (dice.one_in(9) ? " >" : ">");
      open.pop_back();
      if (dice.one_in(3)) text += dice.pick(kContents);
    }
  }
  for (; !open.empty(); open.pop_back()) text += "</" + open.back() + ">";
  return text + "</r>";
}

TEST(XmlReadyTags, LeaveNoTraceInDocumentsThatRepeatThem) {
  for (std::uint32_t seed = 0; seed < 1'500; ++seed) {
    const std::string document = repeating_document(seed);
    ASSERT_EQ(xml_oracle::compare_utf8(document), "") << "seed " << seed << "\n" << document;
    ASSERT_TRUE(xml_oracle::read_utf8<xml_oracle::PlainWitness>(document).accepted) << document;
  }
}

TEST(XmlReadyTags, LeaveNoTraceInDamagedDocuments) {
  for (std::uint32_t seed = 0; seed < 8'000; ++seed) {
    const std::string document = Damage(seed).done_to(repeating_document(seed / 20));
    ASSERT_EQ(xml_oracle::compare_utf8(document), "") << "seed " << seed << "\n" << document;
  }
}

TEST(XmlReadyTags, LeaveNoTraceInDocumentsThatAreCut) {
  for (std::uint32_t seed = 0; seed < 4; ++seed) {
    const std::string document = repeating_document(seed);
    for (std::size_t size = 0; size < document.size(); ++size) {
      ASSERT_EQ(xml_oracle::compare_utf8(document.substr(0, size)), "") << document.substr(0, size);
    }
  }
}

}  // namespace
