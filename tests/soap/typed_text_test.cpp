#include "bvconn/platform/soap/typed_text.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <string_view>

#include "bvconn/platform/soap/float_text.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/soap_uris.h"
#include "bvconn/platform/soap/xml_document.h"
#include "support/error_of.h"

// Texts by their types, against slow readings of the same that are plain to see.
namespace bvconn::test {
namespace {

using Random = std::mt19937_64;
using Type = Variant::Type;

std::string random_text(Random& random, std::string_view alphabet, std::size_t longest) {
  std::string text;
  for (auto left = random() % (longest + 1); left > 0; --left) {
    text.push_back(alphabet[static_cast<std::size_t>(random() % alphabet.size())]);
  }
  return text;
}

/// Every text of up to so many characters of an alphabet.
template <class Visit>
void each_text(std::string_view alphabet, std::size_t longest, const Visit& visit) {
  std::string text;
  const auto go_on = [&](const auto& self) -> void {
    visit(text);
    if (text.size() == longest) return;
    for (const char c : alphabet) {
      text.push_back(c);
      self(self);
      text.pop_back();
    }
  };
  go_on(go_on);
}

/// Digits with an exponent, by the grammar, and then the standard library's number.
std::optional<double> plain_float(std::string_view text) {
  // One sign may stand in front.
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  std::string_view rest = text;
  if (rest.starts_with('-')) rest.remove_prefix(1);
  std::size_t digits = 0;
  const auto skip_digits = [&] {
    std::size_t count = 0;
    for (; !rest.empty() && rest.front() >= '0' && rest.front() <= '9'; ++count) {
      rest.remove_prefix(1);
    }
    return count;
  };
  digits = skip_digits();
  if (rest.starts_with('.')) {
    rest.remove_prefix(1);
    digits += skip_digits();
  }
  if (digits == 0) return std::nullopt;
  if (rest.starts_with('e') || rest.starts_with('E')) {
    rest.remove_prefix(1);
    if (rest.starts_with('-') || rest.starts_with('+')) rest.remove_prefix(1);
    if (skip_digits() == 0) return std::nullopt;
  }
  if (!rest.empty()) return std::nullopt;
  const double value = std::strtod(std::string(text).c_str(), nullptr);
  return std::isinf(value) ? std::nullopt : std::optional<double>(value);
}

void expect_same_float(const std::string& text) {
  const auto value = detail::typed_value(text, "double", detail::kXsdUri);
  const auto plain = plain_float(text);
  ASSERT_EQ(value.has_value(), plain.has_value()) << text;
  if (plain) {
    ASSERT_EQ(std::bit_cast<std::uint64_t>(value->number()), std::bit_cast<std::uint64_t>(*plain))
        << text;
  }
  const auto quick = detail::short_decimal_of(text);
  if (!quick) return;
  const auto any = detail::float_of(text);
  ASSERT_TRUE(any) << text;
  ASSERT_EQ(std::bit_cast<std::uint64_t>(*quick), std::bit_cast<std::uint64_t>(*any)) << text;
}

TEST(TypedText, FloatsAreTheNearestToTheirDigits) {
  each_text("01.-+e", 6, expect_same_float);
  Random random(1);
  for (int i = 0; i < 200'000; ++i) {
    expect_same_float(random_text(random, "0123456789", 15));
    std::string decimal =
        random_text(random, "0123456789", 9) + "." + random_text(random, "0123456789", 9);
    if (i % 4 == 0) decimal.insert(0, "-");
    expect_same_float(decimal);
    expect_same_float(random_text(random, "0123456789.-+", 17));
  }
}

TEST(TypedText, PricesAreReadTheShortWay) {
  for (const char* text : {"0", "1", "17", "1234.50", "-0.25", "999999999999999", "-0", "0.10"}) {
    EXPECT_TRUE(detail::short_decimal_of(text)) << text;
  }
  for (const char* text :
       {"", "-", ".", "1.", ".5", "1e5", "1234567890123456", "+1", "1.2.3", " 1"}) {
    EXPECT_FALSE(detail::short_decimal_of(text)) << text;
  }
  EXPECT_TRUE(std::signbit(*detail::short_decimal_of("-0")));
}

TEST(TypedText, NumbersThatAreNoneStayWhatTheyAre) {
  const auto read = [](std::string_view text) {
    return detail::typed_value(text, "float", detail::kXsdUri);
  };
  EXPECT_EQ(read(" INF "), Variant(std::numeric_limits<double>::infinity()));
  EXPECT_EQ(read("-INF"), Variant(-std::numeric_limits<double>::infinity()));
  EXPECT_TRUE(std::isnan(read("NaN")->number()));
  EXPECT_EQ(read("1e-400"), Variant(0.0));
  EXPECT_TRUE(std::signbit(read("-1e-400")->number()));
  for (const char* text : {"inf", "nan", "1e400", "-1e400", "+-1", "++1", "0x10", "1 2", "", " "}) {
    EXPECT_FALSE(read(text)) << text;
  }
}

struct IntegerType {
  std::string_view name;
  Type held;
  std::int64_t lowest;
  std::int64_t highest;
};
constexpr std::int64_t kLow = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kHigh = std::numeric_limits<std::int64_t>::max();
constexpr std::array kIntegers{IntegerType{"byte", Type::kInt16, -128, 127},
                               IntegerType{"unsignedByte", Type::kInt16, 0, 255},
                               IntegerType{"short", Type::kInt16, -32768, 32767},
                               IntegerType{"unsignedShort", Type::kInt32, 0, 65535},
                               IntegerType{"int", Type::kInt32, -2147483648LL, 2147483647},
                               IntegerType{"unsignedInt", Type::kInt64, 0, 4294967295LL},
                               IntegerType{"long", Type::kInt64, kLow, kHigh},
                               IntegerType{"unsignedLong", Type::kInt64, 0, kHigh},
                               IntegerType{"integer", Type::kInt64, kLow, kHigh},
                               IntegerType{"negativeInteger", Type::kInt64, kLow, -1},
                               IntegerType{"nonNegativeInteger", Type::kInt64, 0, kHigh},
                               IntegerType{"nonPositiveInteger", Type::kInt64, kLow, 0},
                               IntegerType{"positiveInteger", Type::kInt64, 1, kHigh}};

// Nothing for what is no integer, or one of more than 64 bits, which no type holds.
std::optional<std::int64_t> plain_integer(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative || (text.starts_with('+') && text.size() > 1)) text.remove_prefix(1);
  if (text.empty()) return std::nullopt;
  std::uint64_t size = 0;
  for (const char c : text) {
    if (c < '0' || c > '9' || size > kHigh / 10) return std::nullopt;
    size = size * 10 + static_cast<std::uint64_t>(c - '0');
  }
  if (size > std::uint64_t{kHigh} + (negative ? 1 : 0)) return std::nullopt;
  return static_cast<std::int64_t>(negative ? 0 - size : size);
}

std::int64_t held_integer(const Variant& value) {
  if (value.is(Type::kInt16)) return value.int16();
  return value.is(Type::kInt32) ? value.int32() : value.int64();
}

void expect_same_integer(const std::string& text) {
  const auto plain = plain_integer(text);
  for (const IntegerType& type : kIntegers) {
    const auto value = detail::typed_value(text, type.name, detail::kXsdUri);
    const bool fits = plain && *plain >= type.lowest && *plain <= type.highest;
    ASSERT_EQ(value.has_value(), fits) << text << " as " << type.name;
    if (!fits) continue;
    ASSERT_EQ(value->type(), type.held) << text << " as " << type.name;
    ASSERT_EQ(held_integer(*value), *plain) << text;
  }
}

TEST(TypedText, IntegersAreWhatTheirTypesHold) {
  each_text("01-+ x", 4, [](const std::string& text) {
    // Blanks around a value do not count.
    std::string trimmed = text;
    while (trimmed.starts_with(' ')) trimmed.erase(0, 1);
    while (trimmed.ends_with(' ')) trimmed.pop_back();
    if (trimmed == text) expect_same_integer(text);
  });
  for (const IntegerType& type : kIntegers) {
    for (const auto edge : {type.lowest, type.highest}) {
      for (int step = -1; step <= 1; ++step) {
        // By its size alone, since the one beside the edge may have more than 64 bits.
        const bool negative = edge < 0 || (edge == 0 && step < 0);
        const auto value = static_cast<std::uint64_t>(edge) + static_cast<std::uint64_t>(step);
        const auto size = negative ? 0 - value : value;
        const std::string digits = std::to_string(size);
        expect_same_integer((negative ? "-" : "") + digits);
        expect_same_integer((negative ? "-00" : "+00") + digits);
      }
    }
  }
  Random random(2);
  for (int i = 0; i < 20'000; ++i) expect_same_integer(random_text(random, "0123456789-", 20));
}

TEST(TypedText, BooleansAreFourWords) {
  each_text("true01fals", 5, [](const std::string& text) {
    const auto value = detail::typed_value(text, "boolean", detail::kXsdUri);
    const bool truth = text == "true" || text == "1";
    const bool known = truth || text == "false" || text == "0";
    ASSERT_EQ(value.has_value(), known) << text;
    if (known) {
      ASSERT_EQ(value->boolean(), truth) << text;
    }
  });
}

TEST(TypedText, OnlyTheSimpleTypesOfTheFourNamespacesReadAsSomethingElseThanAString) {
  const std::set<std::string> simple{"base64",
                                     "base64Binary",
                                     "boolean",
                                     "byte",
                                     "date",
                                     "dateTime",
                                     "decimal",
                                     "double",
                                     "float",
                                     "hexBinary",
                                     "int",
                                     "integer",
                                     "long",
                                     "negativeInteger",
                                     "nonNegativeInteger",
                                     "nonPositiveInteger",
                                     "positiveInteger",
                                     "short",
                                     "timeInstant",
                                     "unsignedByte",
                                     "unsignedInt",
                                     "unsignedLong",
                                     "unsignedShort",
                                     "QName"};
  std::set<std::string> names{"", "string", "anyType", "Int", "INT", "token", "time", "qname"};
  for (const std::string& name : simple) {
    names.insert({name, name + "x", name.substr(1), name.substr(0, name.size() - 1)});
    std::string changed = name;
    changed.back() = 'Z';
    names.insert(changed);
    changed = name;
    changed.front() = 'Z';
    names.insert(changed);
  }
  const std::set<std::string> known{std::string(detail::kXsdUri), std::string(detail::kXsdUri1999),
                                    std::string(detail::kXsdUri2000),
                                    std::string(detail::kEncodingUri)};
  std::set<std::string> spaces = known;
  spaces.insert({"", "urn:x", "http://www.w3.org/2001/XMLSchema-instance"});
  for (const std::string& name : names) {
    for (const std::string& space : spaces) {
      const bool is_string = !simple.contains(name) || !known.contains(space);
      EXPECT_EQ(detail::type_index(name, space) == detail::kStringType, is_string)
          << name << " in " << space;
      const auto value = detail::typed_value("no such value", name, space);
      if (is_string) {
        EXPECT_EQ(value, Variant("no such value")) << name << " in " << space;
      } else if (name != "QName") {
        EXPECT_FALSE(value) << name << " in " << space;
      }
    }
  }
}

/// Nodes of one name and one type, which look their type up together.
class NodesThatAreAlike : public testing::Test {
 protected:
  static SoapNodes read(const std::string& nodes) {
    return node_from_xml(
               "<r xmlns:x='http://www.w3.org/2001/XMLSchema'"
               " xmlns:i='http://www.w3.org/2001/XMLSchema-instance'>" +
               nodes + "</r>")
        .Nodes();
  }
};

TEST_F(NodesThatAreAlike, AreReadByTheirTypeWhateverWasReadBefore) {
  const SoapNodes nodes = read(
      "<n i:type='x:int'>1</n><n i:type='x:int'>2</n><n>3</n><n>4</n><n i:type='x:string'>5</n>"
      "<n i:type='x:int'>six</n>");
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(nodes.Item(0).Value(), Variant(1));
    EXPECT_EQ(nodes.Item(1).Value(), Variant(2));
    EXPECT_EQ(nodes.Item(2).Value(), Variant("3"));
    EXPECT_EQ(nodes.Item(3).Value(), Variant("4"));
    EXPECT_EQ(nodes.Item(4).Value(), Variant("5"));
    EXPECT_EQ(error_of([&] { nodes.Item(5).Value(); }).description,
              "Type mismatch: the text \"six\" of the node \"n\" is not of its type int");
  }
}

TEST_F(NodesThatAreAlike, AreNoLongerWhenOneOfThemIsChanged) {
  const SoapNodes nodes = read("<n i:type='x:int'>1</n><n i:type='x:int'>2</n>");
  EXPECT_EQ(nodes.Item(0).Value(), Variant(1));
  nodes.Item(0).Value(Variant("one"));
  EXPECT_EQ(nodes.Item(0).Value(), Variant("one"));
  EXPECT_EQ(nodes.Item(1).Value(), Variant(2));
  nodes.Item(1).Name("m");
  EXPECT_EQ(nodes.Item(1).Value(), Variant(2));
}

TEST_F(NodesThatAreAlike, MayBeReferredToByTypesOfTheirOwn) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parse(
      "<s:Envelope xmlns:s='http://schemas.xmlsoap.org/soap/envelope/'"
      " xmlns:x='http://www.w3.org/2001/XMLSchema'"
      " xmlns:i='http://www.w3.org/2001/XMLSchema-instance'><s:Body><r>"
      "<a href='#1' i:type='x:int'/><b href='#1'/><c href='#1' i:type='x:boolean'/><d href='#2'"
      " i:type='x:boolean'/></r><m id='1'>1</m><m id='2' i:type='x:int'>1</m></s:Body>"
      "</s:Envelope>",
      "");
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(envelope.Parameters().Item(0).Value(), Variant(1));
    EXPECT_EQ(envelope.Parameters().Item(1).Value(), Variant("1"));
    EXPECT_EQ(envelope.Parameters().Item(2).Value(), Variant(true));
    EXPECT_EQ(envelope.Parameters().Item(3).Value(), Variant(1));
  }
}

}  // namespace
}  // namespace bvconn::test
