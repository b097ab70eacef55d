// Our reader and expat, an older one that shares nothing with it, must agree on any document. Where
// they do not, on purpose, `may_differ` in expat_oracle.h says so.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "xml/document_generator.h"
#include "xml/expat_oracle.h"

namespace {

using namespace xml_oracle;
using namespace std::string_literals;
using namespace std::string_view_literals;

constexpr std::string_view kByHand[] = {
    "<a/>",
    "<?xml version='1.0' encoding='UTF-8'?><a b='1&#10;2\t3'>x&amp;<![CDATA[<]]>y<!-- c --></a>",
    "<a xmlns='u' xmlns:p='v'><p:b xmlns='' p:c='1' c='2'/><d xml:lang='de'/></a>",
    "<a xmlns:p='u' p:b='1' b='2'><p:a p:b='3'/></a>",
    "<a xmlns:p='u' xmlns:q='u' p:b='1' q:b='2'/>",
    "<a>]]></a>",
    "<a>]]&gt;]] ></a>",
    "<a b='1' b='2'/>",
    "<a>\r\r\n\n&#13;</a>",
    "<!-- - --><?p  d ?><a><?p?></a><?p?><!---->",
    "<a:b:c xmlns:a='u'/>",
    "<?p:q?><a/>",
    "<a xmlns:p=''/>",
    "<a xmlns:xmlns='u'/>",
    "<a xmlns:xml='u'/>",
    "<xmlns:a/>",
    "<a xmlns:p='http://www.w3.org/2000/xmlns/'/>",
    "<a xmlns='http://www.w3.org/XML/1998/namespace'/>",
    "<a>&#xD800;</a>",
    "<a>&nbsp;</a>",
    "<a>\xED\xA0\x80</a>",
    "<a>\xF4\x90\x80\x80</a>",
    "<a>\0</a>"sv,
    "<a>\x7F\xC2\x80</a>",
    "<a>\xEF\xBF\xBE</a>",
    "<?xml version='1.0' standalone='maybe'?><a/>",
    "<?xml version='1.0' encoding='8'?><a/>",
    "<a/>\n<b/>",
    "\xEF\xBB\xBF<a/>",
    "",
};

TEST(XmlDifferential, AgreesOnDocumentsWrittenByHand) {
  for (const std::string_view document : kByHand) {
    EXPECT_EQ(compare_utf8(std::string(document)), "") << document;
    EXPECT_EQ(compare_bytes(std::string(document)), "") << document;
  }
}

TEST(XmlDifferential, AgreesOnDocumentsCutAtAnyByte) {
  for (std::uint32_t seed = 0; seed < 20; ++seed) {
    const std::string document = DocumentGenerator(seed, {}).document();
    for (std::size_t size = 0; size < document.size(); ++size) {
      const std::string beginning = document.substr(0, size);
      ASSERT_EQ(compare_utf8(beginning), "") << beginning;
    }
  }
}

TEST(XmlDifferential, AgreesOnGeneratedDocuments) {
  for (std::uint32_t seed = 0; seed < 5'000; ++seed) {
    const std::string document = DocumentGenerator(seed, {}).document();
    ASSERT_EQ(compare_utf8(document), "") << "seed " << seed << "\n" << document;
    const Ours ours = read_utf8<CommentWitness>(document);
    ASSERT_TRUE(ours.accepted) << "seed " << seed << ": " << ours.error->message << "\n"
                               << document;
  }
}

TEST(XmlDifferential, AgreesOnGeneratedDocumentsInOtherEncodings) {
  struct Kind {
    const char* declared;
    const char* written;
    bool has_latin_1_only;
  };
  // "UTF-16" with a mark, "UTF-16LE" without one: the C library writes them so.
  static constexpr Kind kKinds[] = {
      {"UTF-16", "UTF-16", false},        {"UTF-16LE", "UTF-16LE", false},
      {"UTF-16BE", "UTF-16BE", false},    {"ISO-8859-1", "ISO-8859-1", true},
      {"iso-8859-1", "ISO-8859-1", true}, {"ISO-8859-15", "ISO-8859-15", true},
      {"windows-1252", "CP1252", true},   {"UTF-8", "UTF-8", false},
  };
  for (std::uint32_t seed = 0; seed < 4'000; ++seed) {
    const Kind& kind = kKinds[seed % std::size(kKinds)];
    DocumentGenerator generator(seed, {.latin_1_only = kind.has_latin_1_only});
    const std::string text = generator.document(kind.declared);
    const std::string bytes = encoded(text, kind.written);
    ASSERT_EQ(compare_bytes(bytes), "") << "seed " << seed << " as " << kind.written << "\n"
                                        << text;
    const Ours ours = read_bytes<CommentWitness>(bytes);
    ASSERT_TRUE(ours.accepted) << "seed " << seed << ": " << ours.error->message << "\n" << text;
    const Ours as_utf8 = read_utf8<CommentWitness>(text);
    ASSERT_EQ(ours.dump, as_utf8.dump) << "seed " << seed << " as " << kind.written;
  }
}

TEST(XmlDifferential, AgreesOnDamagedDocuments) {
  int accepted = 0;
  int refused = 0;
  for (std::uint32_t seed = 0; seed < 50'000; ++seed) {
    const std::string whole = DocumentGenerator(seed / 25, {}).document();
    const std::string document = Damage(seed).done_to(whole);
    ASSERT_EQ(compare_utf8(document), "") << "seed " << seed << "\n" << document;
    ++(read_utf8<PlainWitness>(document).accepted ? accepted : refused);
  }
  // Damage that always, or never, broke a document would test little.
  EXPECT_GT(accepted, 5'000);
  EXPECT_GT(refused, 5'000);
}

TEST(XmlDifferential, AgreesOnDamagedBytesOfOtherEncodings) {
  static constexpr const char* kEncodings[] = {"UTF-16", "UTF-16LE", "ISO-8859-1"};
  for (std::uint32_t seed = 0; seed < 6'000; ++seed) {
    const char* const encoding = kEncodings[seed % std::size(kEncodings)];
    DocumentGenerator generator(seed / 10, {.latin_1_only = true});
    const std::string bytes = Damage(seed).done_to(encoded(generator.document(encoding), encoding));
    ASSERT_EQ(compare_bytes(bytes), "") << "seed " << seed << " as " << encoding << "\n" << bytes;
  }
}

// ------------------------------------------------- the reasons for which the two may differ

TEST(XmlDifferential, DiffersOnDocumentTypes) {
  const std::string document = "<!DOCTYPE a><a/>";
  EXPECT_TRUE(read_with_expat(document, nullptr, true).accepted);
  EXPECT_FALSE(read_utf8<CommentWitness>(document).accepted);
}

// Whether expat refuses them too depends on how old it is.
TEST(XmlDifferential, RefusesVersionsThatDoNotExist) {
  for (const std::string document : {"<?xml version='2.0'?><a/>", "<?xml version='1.x'?><a/>"}) {
    EXPECT_FALSE(read_utf8<CommentWitness>(document).accepted) << document;
    EXPECT_EQ(compare_utf8(document), "") << document;
    EXPECT_EQ(compare_bytes(document), "") << document;
  }
}

TEST(XmlDifferential, DiffersOnNamesThatOnlyTheFifthEditionAllows) {
  const std::string document = "<\xF0\x90\x80\x80/>";
  EXPECT_FALSE(read_with_expat(document, nullptr, true).accepted);
  EXPECT_TRUE(read_utf8<CommentWitness>(document).accepted);
}

// Every character of the upper half of Latin-1 as the second of a name.
TEST(XmlDifferential, DiffersOnTheLettersThatExpatAloneTakesForNames) {
  std::string differing;
  for (int character = 0x80; character <= 0xFF; ++character) {
    const char letter = static_cast<char>(character);
    const std::string document = "<?xml version='1.0' encoding='ISO-8859-1'?><a"s + letter + "/>";
    ASSERT_EQ(compare_bytes(document), "") << character;
    const bool ours = read_bytes<CommentWitness>(document).accepted;
    if (ours != read_with_expat(document, nullptr, true).accepted) differing += letter;
  }
  EXPECT_EQ(differing, "\xAA\xB5\xBA");
}

TEST(XmlDifferential, DiffersOnAMarkThatContradictsTheDeclaration) {
  const std::string document =
      "\xEF\xBB\xBF<?xml version='1.0' encoding='ISO-8859-1'?><a>\xC3\xA9</a>";
  const Ours ours = read_bytes<CommentWitness>(document);
  ASSERT_TRUE(ours.accepted);
  EXPECT_NE(ours.dump.find("text 2:\xC3\xA9\n"), std::string::npos) << ours.dump;
  EXPECT_NE(read_with_expat(document, nullptr, true).dump, ours.dump);
}

TEST(XmlDifferential, WouldShowAWrongTree) {
  const std::string document = "<a b='1'>text</a>";
  Ours ours = read_utf8<CommentWitness>(document);
  const Theirs theirs = read_with_expat(document, "UTF-8", true);
  ASSERT_EQ(difference(ours, theirs), "");
  ours.dump = read_utf8<CommentWitness>("<a b='1'>tex</a>").dump;
  EXPECT_NE(difference(ours, theirs), "");
  ours.accepted = false;
  ours.error =
      bvconn::detail::xml::ReadError(bvconn::detail::xml::Problem::not_well_formed, {}, "");
  EXPECT_NE(difference(ours, theirs), "");
  EXPECT_FALSE(may_differ(ours, theirs));
}

}  // namespace
