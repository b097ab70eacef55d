#include "bvconn/platform/torvexlib/json_arguments.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "bvconn/platform/soap/soap_node.h"
#include "support/error_of.h"

namespace bvconn::detail {
namespace {

std::string body_of(const std::vector<Variant>& arguments) {
  return json_arguments("SearchService.SearchForBrands", arguments);
}

Error error_of_arguments(const std::vector<Variant>& arguments) {
  return test::error_of([&] { body_of(arguments); });
}

TEST(JsonArguments, AreAnArrayAlsoWithoutAny) {
  EXPECT_EQ(body_of({}), R"({"arguments":[]})");
}

TEST(JsonArguments, EachValueGoesByItsOwnType) {
  EXPECT_EQ(
      body_of({Variant("text"), Variant(true), Variant(false), Variant(std::int16_t{-7}),
               Variant(std::int32_t{70000}), Variant(std::int64_t{5000000000}), Variant(2.5)}),
      R"({"arguments":["text",true,false,-7,70000,5000000000,2.5]})");
}

TEST(JsonArguments, EmptyAndMissingAreNull) {
  EXPECT_EQ(body_of({Variant(), Variant(Variant::Missing{}), Variant("")}),
            R"({"arguments":[null,null,""]})");
}

TEST(JsonArguments, ADateIsIsoText) {
  EXPECT_EQ(body_of({Variant(from_civil({.year = 2007, .month = 1, .day = 5, .hour = 13}))}),
            R"({"arguments":["2007-01-05T13:00:00"]})");
}

TEST(JsonArguments, AnArrayIsAnArrayAndNullWhenItIsNotAllocated) {
  EXPECT_EQ(body_of({Variant(StringArray{"a", "b"}),
                     Variant(StringArray(std::vector<std::string>{})), Variant(StringArray())}),
            R"({"arguments":[["a","b"],[],null]})");
  EXPECT_EQ(body_of({Variant(VariantArray(
                {Variant(std::int32_t{1}), Variant(VariantArray({Variant("x")})), Variant()}))}),
            R"({"arguments":[[1,["x"],null]]})");
}

TEST(JsonArguments, TextIsEscapedAndStaysUtf8) {
  EXPECT_EQ(body_of({Variant("a\"b\\c\n\x01 \xC3\xA4 <x/>")}),
            "{\"arguments\":[\"a\\\"b\\\\c\\n\\u0001 \xC3\xA4 <x/>\"]}");
}

TEST(JsonArguments, AQualifiedNameIsItsLocalPart) {
  EXPECT_EQ(body_of({Variant(QualifiedName{.name_space = "urn:n", .local = "Client"})}),
            R"({"arguments":["Client"]})");
}

TEST(JsonArguments, AnEmptyReferenceIsNullAndANodeIsRefused) {
  EXPECT_EQ(body_of({Variant(SoapNode())}), R"({"arguments":[null]})");
  EXPECT_EQ(error_of_arguments({Variant(SoapNode::make("n"))}).number, 13);
}

TEST(JsonArguments, WhatJsonCannotCarryIsATypeMismatch) {
  const Error text = error_of_arguments({Variant("good"), Variant("b\xFF!")});
  EXPECT_EQ(text.number, 13);
  EXPECT_EQ(text.source, "BVConn");
  EXPECT_EQ(text.description,
            "Argument 2 of SearchService.SearchForBrands cannot be sent: the text \"b\\xFF!\" is "
            "not UTF-8");
  EXPECT_EQ(error_of_arguments({Variant(std::nan(""))}).number, 13);
  EXPECT_EQ(error_of_arguments({Variant(-std::numeric_limits<double>::infinity())}).number, 13);
  EXPECT_EQ(error_of_arguments({Variant(Bytes{std::byte{1}})}).number, 13);
  EXPECT_EQ(error_of_arguments({Variant(VariantArray({Variant("\x80")}))}).number, 13);
}

TEST(JsonError, TakesItsThreeValues) {
  const auto error = json_error(
      R"({"number":-2147204607,"source":"SearchService","description":"no such \u00e4","x":1})");
  ASSERT_TRUE(error);
  EXPECT_EQ(hex_number(error->number), "0x80044201");
  EXPECT_EQ(error->source, "SearchService");
  EXPECT_EQ(error->description, "no such \xC3\xA4");
}

TEST(JsonError, TheNumberMayBeWrittenWithoutASign) {
  EXPECT_EQ(json_error(R"({"number":2147762689,"source":"","description":""})")->number,
            -2147204607);
  EXPECT_EQ(json_error(R"({"number":4294967295,"source":"","description":""})")->number, -1);
  EXPECT_EQ(json_error(R"({"number":13,"source":"","description":""})")->number, 13);
}

TEST(JsonError, AnyOtherBodyIsNone) {
  for (const char* body :
       {"", "null", "[]", "\"x\"", "<html/>", "{", R"({"number":1,"source":"s"})",
        R"({"number":1,"description":"d"})", R"({"source":"s","description":"d"})",
        R"({"number":"1","source":"s","description":"d"})",
        R"({"number":1.5,"source":"s","description":"d"})",
        R"({"number":4294967296,"source":"s","description":"d"})",
        R"({"number":-2147483649,"source":"s","description":"d"})",
        R"({"number":18446744073709551615,"source":"s","description":"d"})",
        R"({"number":1e400,"source":"s","description":"d"})",
        R"({"number":1,"source":null,"description":"d"})",
        R"({"number":1,"source":"s","description":7})",
        R"({"number":1,"source":"s","description":"d"} trailing)"}) {
    EXPECT_FALSE(json_error(body)) << body;
  }
  EXPECT_FALSE(json_error(std::string(1'000'000, '[')));
}

}  // namespace
}  // namespace bvconn::detail
