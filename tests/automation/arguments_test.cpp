#include "arguments.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "bvconn/platform/conversions/date.h"

namespace bvconn::test {
namespace {

using automation::Value;
using automation::ValueType;

Value from_json(std::string_view json, ValueType type) {
  tool::CallArguments arguments;
  return tool::value_from_json(tool::parse_json(json), type, arguments);
}

Variant variant(std::string_view json) {
  return std::get<Variant>(from_json(json, ValueType::kVariant));
}

/// What is said about a value that does not fit; nothing for one that does.
std::optional<std::string> usage(std::string_view json, ValueType type) {
  try {
    from_json(json, type);
  } catch (const tool::UsageError& error) {
    return error.what();
  }
  return std::nullopt;
}

Value from_text(std::string_view text, ValueType type) {
  tool::CallArguments arguments;
  return tool::value_from_text(text, type, arguments);
}

TEST(JsonArgument, AStringIsAString) {
  EXPECT_EQ(std::get<Variant>(from_json(R"("a\u00e9")", ValueType::kString)), Variant("a\xC3\xA9"));
  for (const char* json : {"1", "null", "true", "[]", "{}"}) {
    EXPECT_EQ(usage(json, ValueType::kString), "a string is expected") << json;
  }
}

TEST(JsonArgument, ABooleanIsTrueOrFalse) {
  EXPECT_EQ(std::get<Variant>(from_json("true", ValueType::kBoolean)), Variant(true));
  EXPECT_EQ(std::get<Variant>(from_json("false", ValueType::kBoolean)), Variant(false));
  for (const char* json : {"1", "\"true\"", "null"}) {
    EXPECT_EQ(usage(json, ValueType::kBoolean), "true or false is expected") << json;
  }
}

TEST(JsonArgument, A16BitIntegerHasItsRange) {
  EXPECT_EQ(std::get<Variant>(from_json("32767", ValueType::kInt16)), Variant(std::int16_t{32767}));
  EXPECT_EQ(std::get<Variant>(from_json("-32768", ValueType::kInt16)),
            Variant(std::int16_t{-32768}));
  for (const char* json : {"32768", "-32769", "1.5", "\"1\"", "null", "1e300", "true"}) {
    EXPECT_EQ(usage(json, ValueType::kInt16), "a whole number from -32768 to 32767 is expected")
        << json;
  }
}

TEST(JsonArgument, A32BitIntegerHasItsRange) {
  EXPECT_EQ(std::get<Variant>(from_json("2147483647", ValueType::kInt32)),
            Variant(std::int32_t{2147483647}));
  EXPECT_EQ(std::get<Variant>(from_json("-2147483648", ValueType::kInt32)),
            Variant(std::int32_t{-2147483647 - 1}));
  for (const char* json : {"2147483648", "-2147483649", "18446744073709551615",
                           "123456789012345678901234567890", "0.5", "[]"}) {
    EXPECT_EQ(usage(json, ValueType::kInt32),
              "a whole number from -2147483648 to 2147483647 is expected")
        << json;
  }
}

TEST(JsonArgument, AnArrayOfStringsIsAllocatedUnlessNull) {
  EXPECT_EQ(std::get<StringArray>(from_json(R"(["x","y"])", ValueType::kStringArray)),
            (StringArray{"x", "y"}));
  const auto empty = std::get<StringArray>(from_json("[]", ValueType::kStringArray));
  EXPECT_TRUE(empty.allocated());
  EXPECT_EQ(empty.size(), 0U);
  EXPECT_FALSE(std::get<StringArray>(from_json("null", ValueType::kStringArray)).allocated());
  for (const char* json : {"\"x\"", "[1]", "[\"x\",null]", "{}"}) {
    EXPECT_EQ(usage(json, ValueType::kStringArray), "an array of strings or null is expected")
        << json;
  }
}

TEST(JsonArgument, AVariantTakesTheTypeOfItsJson) {
  EXPECT_EQ(variant("\"t\""), Variant("t"));
  EXPECT_EQ(variant("true"), Variant(true));
  EXPECT_EQ(variant("7"), Variant(std::int32_t{7}));
  EXPECT_EQ(variant("-7"), Variant(std::int32_t{-7}));
  EXPECT_EQ(variant("7.5"), Variant(7.5));
  EXPECT_EQ(variant("null"), Variant());
  EXPECT_EQ(variant(R"({"missing":true})"), Variant(Variant::Missing{}));
}

TEST(JsonArgument, AVariantBeyond32BitsIsADouble) {
  EXPECT_EQ(variant("2147483647"), Variant(std::int32_t{2147483647}));
  EXPECT_EQ(variant("2147483648"), Variant(2147483648.0));
  EXPECT_EQ(variant("-2147483649"), Variant(-2147483649.0));
}

TEST(JsonArgument, AVariantDateIsADate) {
  EXPECT_EQ(variant(R"({"date":"2007-01-05T00:00:00"})"),
            Variant(from_civil({.year = 2007, .month = 1, .day = 5, .hour = 0})));
  EXPECT_EQ(variant(R"({"date":"2007-12-31T23:59:58"})"),
            Variant(from_civil(
                {.year = 2007, .month = 12, .day = 31, .hour = 23, .minute = 59, .second = 58})));
  for (const char* json : {R"({"date":"1/31/2007"})", R"({"date":"2007-02-30T00:00:00"})",
                           R"({"date":""})", R"({"date":"2007-01-05"})"}) {
    EXPECT_EQ(usage(json, ValueType::kVariant), "a date such as 2007-01-05T00:00:00 is expected")
        << json;
  }
}

TEST(JsonArgument, AVariantNodeIsANode) {
  EXPECT_EQ(variant(R"({"xml":"<a/>"})").node().Name(), "a");
}

TEST(JsonArgument, AVariantArrayHoldsVariants) {
  EXPECT_EQ(
      variant(R"(["x",1,2.5,null])"),
      Variant(VariantArray({Variant("x"), Variant(std::int32_t{1}), Variant(2.5), Variant()})));
  EXPECT_EQ(variant("[[true]]"), Variant(VariantArray({Variant(VariantArray({Variant(true)}))})));
  EXPECT_TRUE(variant("[]").array().allocated());
}

TEST(JsonArgument, AVariantRefusesOtherObjects) {
  for (const char* json : {"{}", R"({"missing":false})", R"({"date":1})", R"({"xml":"<a>"})",
                           R"({"xml":"<a/>","n":1})", R"({"document":true})"}) {
    EXPECT_TRUE(usage(json, ValueType::kVariant).has_value()) << json;
  }
}

TEST(JsonArgument, ATooDeepArrayIsRefused) {
  const auto nested = [](std::size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
  };
  EXPECT_EQ(usage(nested(102), ValueType::kVariant), "the array is too deep");
  EXPECT_EQ(usage(nested(200'000), ValueType::kVariant), "the JSON nests deeper than 500");
}

TEST(JsonArgument, ANodeIsXmlOrNull) {
  const auto node = std::get<Variant>(
      from_json(R"({"xml":"<Project><Name>N</Name></Project>"})", ValueType::kSoapNode));
  EXPECT_EQ(node.node().Name(), "Project");
  EXPECT_EQ(node.node().Nodes().ItemByName("Name").Value(), Variant("N"));
  EXPECT_FALSE(std::get<Variant>(from_json("null", ValueType::kSoapNode)).node());
  for (const char* json : {"\"<a/>\"", "{}", R"({"xml":null})", R"({"xml":"no xml"})", "1"}) {
    EXPECT_TRUE(usage(json, ValueType::kSoapNode).has_value()) << json;
  }
}

TEST(JsonArgument, ADocumentIsMadeOrNothing) {
  tool::CallArguments arguments;
  const Value made = tool::value_from_json(tool::parse_json(R"({"document":true})"),
                                           ValueType::kXMLDocument, arguments);
  ASSERT_EQ(arguments.documents.size(), 1U);
  EXPECT_EQ(std::get<XMLDocument*>(made), arguments.documents[0].get());
  EXPECT_EQ(std::get<XMLDocument*>(from_json("null", ValueType::kXMLDocument)), nullptr);
  EXPECT_EQ(usage(R"({"document":false})", ValueType::kXMLDocument),
            "{\"document\":true} or null is expected");
}

TEST(JsonArgument, AKeyThatStandsTwiceIsRefused) {
  EXPECT_THROW(tool::parse_json(R"({"a":1,"b":{"c":1,"c":2}})"), tool::UsageError);
  EXPECT_NO_THROW(tool::parse_json(R"({"a":1,"b":{"a":2},"c":{"a":3}})"));
}

TEST(TextArgument, TextIsReadByTheArgumentsType) {
  EXPECT_EQ(std::get<Variant>(from_text("12", ValueType::kString)), Variant("12"));
  EXPECT_EQ(std::get<Variant>(from_text("12", ValueType::kVariant)), Variant("12"));
  EXPECT_EQ(std::get<Variant>(from_text("12", ValueType::kInt32)), Variant(std::int32_t{12}));
  EXPECT_EQ(std::get<Variant>(from_text("-12", ValueType::kInt16)), Variant(std::int16_t{-12}));
  EXPECT_EQ(std::get<Variant>(from_text("true", ValueType::kBoolean)), Variant(true));
  EXPECT_EQ(std::get<Variant>(from_text("False", ValueType::kBoolean)), Variant(false));
  EXPECT_EQ(std::get<StringArray>(from_text(R"(["a"])", ValueType::kStringArray)),
            StringArray{"a"});
  EXPECT_FALSE(std::get<StringArray>(from_text("null", ValueType::kStringArray)).allocated());
  EXPECT_EQ(std::get<Variant>(from_text("<a/>", ValueType::kSoapNode)).node().Name(), "a");
  EXPECT_FALSE(std::get<Variant>(from_text("null", ValueType::kSoapNode)).node());
}

TEST(TextArgument, WhatDoesNotReadIsRefused) {
  EXPECT_THROW(from_text("12x", ValueType::kInt32), tool::UsageError);
  EXPECT_THROW(from_text("", ValueType::kInt32), tool::UsageError);
  EXPECT_THROW(from_text("40000", ValueType::kInt16), tool::UsageError);
  EXPECT_THROW(from_text("maybe", ValueType::kBoolean), tool::UsageError);
  EXPECT_THROW(from_text("<a>", ValueType::kSoapNode), tool::UsageError);
  EXPECT_THROW(from_text("\xFF", ValueType::kString), tool::UsageError);
  EXPECT_THROW(from_text("yes", ValueType::kXMLDocument), tool::UsageError);
}

}  // namespace
}  // namespace bvconn::test
