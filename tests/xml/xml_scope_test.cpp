#include "bvconn/platform/xml/xml_scope.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "bvconn/platform/xml/xml_reader.h"

namespace {

using bvconn::detail::xml::Attribute;
using bvconn::detail::xml::compare_uris;
using bvconn::detail::xml::kXmlUri;
using bvconn::detail::xml::Name;
using bvconn::detail::xml::Scope;

TEST(XmlScope, KnowsXmlAndTheEmptyPrefixFromTheBeginning) {
  const Scope scope;
  EXPECT_EQ(scope.lookup("xml"), kXmlUri);
  EXPECT_EQ(scope.lookup(""), "");
  EXPECT_EQ(scope.default_namespace(), "");
  EXPECT_EQ(scope.lookup("xmlns"), std::nullopt);
  EXPECT_EQ(scope.lookup("p"), std::nullopt);
}

TEST(XmlScope, TakesDeclarationsBack) {
  Scope scope;
  scope.declare("p", "u1");
  const std::size_t outer = scope.mark();
  scope.declare("p", "u2");
  scope.declare("q", "u3");
  scope.declare("", "u4");
  EXPECT_EQ(scope.lookup("p"), "u2");
  EXPECT_EQ(scope.lookup("q"), "u3");
  EXPECT_EQ(scope.default_namespace(), "u4");
  scope.forget_after(outer);
  EXPECT_EQ(scope.lookup("p"), "u1");
  EXPECT_EQ(scope.lookup("q"), std::nullopt);
  EXPECT_EQ(scope.default_namespace(), "");
}

TEST(XmlScope, KeepsManyPrefixesApart) {
  std::vector<std::string> prefixes;
  for (int i = 0; i < 300; ++i) prefixes.push_back("p" + std::to_string(i));
  Scope scope;
  for (const auto& prefix : prefixes) scope.declare(prefix, prefix);
  const std::size_t outer = scope.mark();
  for (const auto& prefix : prefixes) scope.declare(prefix, "inner");
  EXPECT_EQ(scope.lookup("p0"), "inner");
  EXPECT_EQ(scope.lookup("p299"), "inner");
  scope.forget_after(outer);
  for (const auto& prefix : prefixes) EXPECT_EQ(scope.lookup(prefix), prefix);
  scope.forget_after(0);
  for (const auto& prefix : prefixes) EXPECT_EQ(scope.lookup(prefix), std::nullopt);
  EXPECT_EQ(scope.lookup("xml"), kXmlUri);
}

TEST(XmlScope, MakesEqualLongNamespacesOneSlice) {
  const std::string first(1000, 'u');
  const std::string second = first;
  const std::string other = std::string(999, 'u') + "v";
  Scope scope;
  scope.declare("p", first);
  scope.declare("q", second);
  scope.declare("r", other);
  EXPECT_EQ(compare_uris(*scope.lookup("p"), *scope.lookup("q")), 0);
  const int order = compare_uris(*scope.lookup("p"), *scope.lookup("r"));
  EXPECT_NE(order, 0);
  EXPECT_LT(order * compare_uris(*scope.lookup("r"), *scope.lookup("p")), 0);
}

TEST(XmlScope, ComparesShortNamespacesByTheirText) {
  const std::string first = "urn:a";
  const std::string second = first;
  EXPECT_EQ(compare_uris(first, second), 0);
  EXPECT_NE(compare_uris(first, "urn:b"), 0);
  EXPECT_NE(compare_uris(first, ""), 0);
}

/// Looks the prefix of each text up, as values that are qualified names need it.
struct LookingUp {
  void start_element(const Name&, std::span<const Attribute> attributes, const Scope& scope) {
    for (const auto& attribute : attributes) {
      if (attribute.local == "type")
        found.emplace_back(scope.lookup(attribute.value).value_or("-"));
    }
  }
  void text(std::string_view) {}
  void end_element(const Scope& scope) { at_ends.emplace_back(scope.lookup("p").value_or("-")); }

  std::vector<std::string> found;
  std::vector<std::string> at_ends;
};

TEST(XmlScope, IsThatOfTheElementAtItsStartAndAtItsEnd) {
  std::string document =
      "<a type='p'><b type='p' xmlns:p='u'><c type='p'/></b><d xmlns:p='v'/><e type='p'/></a>";
  LookingUp sink;
  bvconn::detail::xml::parse(document, {}, sink);
  EXPECT_EQ(sink.found, (std::vector<std::string>{"-", "u", "u", "-"}));
  EXPECT_EQ(sink.at_ends, (std::vector<std::string>{"u", "u", "v", "-", "-"}));
}

}  // namespace
