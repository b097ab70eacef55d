#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/raw_text.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/typed_text.h"
#include "json_text.h"

// Answers are written as they are walked. Here the same values are put into the JSON library's
// tree by way of the handles that an application has, and that library writes them: each byte has
// to be the same.
namespace bvconn::test {
namespace {

using tool::Json;

std::string written(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json json_of(const SoapNode& node);

Json json_of(const Variant& value) {
  using Type = Variant::Type;
  switch (value.type()) {
    case Type::kEmpty:
    case Type::kMissing:
      return nullptr;
    case Type::kBoolean:
      return value.boolean();
    case Type::kInt16:
      return value.int16();
    case Type::kInt32:
      return value.int32();
    case Type::kInt64:
      return value.int64();
    case Type::kDouble:
      if (std::isfinite(value.number())) return value.number();
      return std::isnan(value.number()) ? "NaN" : value.number() > 0 ? "INF" : "-INF";
    case Type::kString:
      return value.string();
    case Type::kDate:
      return Json{{"date", conversions::iso_date_text(value.date())}};
    case Type::kBytes:
      return detail::to_base64(value.bytes());
    case Type::kArray: {
      if (!value.array().allocated()) return nullptr;
      Json items = Json::array();
      for (const Variant& item : value.array().items()) items.push_back(json_of(item));
      return items;
    }
    case Type::kNode:
      if (!value.node()) return nullptr;
      return Json{{"node", json_of(value.node())}};
    case Type::kQualifiedName:
      return value.qualified_name().local;
  }
  return nullptr;
}

Json json_of(const SoapNode& node) {
  Json json;
  json["name"] = node.Name();
  std::string unreadable;
  try {
    const Variant value = node.Value();
    json["value"] = value.is(Variant::Type::kNode) ? Json() : json_of(value);
  } catch (const Error& error) {
    unreadable = error.description;
    json["value"] = node.Nodes().Count() > 0 ? Json() : Json(raw_text(node));
  }
  json["nodes"] = Json::array();
  for (const SoapNode& child : node.Nodes()) json["nodes"].push_back(json_of(child));
  if (node.nil()) json["nil"] = true;
  if (!unreadable.empty()) json["unreadable"] = unreadable;
  if (!node.Namespace().empty()) json["namespace"] = node.Namespace();
  return json;
}

void expect_as_the_library_writes(const Variant& value) {
  ASSERT_EQ(tool::json_value(value), written(json_of(value)));
}

class Random {
 public:
  explicit Random(std::uint32_t seed) : engine_(seed) {}

  std::uint64_t bits() { return engine_(); }
  std::size_t below(std::size_t count) { return static_cast<std::size_t>(engine_() % count); }
  bool one_in(std::size_t count) { return below(count) == 0; }
  template <class Items>
  auto pick(const Items& items) {
    return items[below(std::size(items))];
  }

  /// Bytes that are near to what matters: quotes, controls, the edges of UTF-8.
  std::string bytes(std::size_t longest) {
    static constexpr std::array<unsigned char, 40> kBytes{
        'a',  'b',  ' ',  '"',  '\\', '/',  0x00, 0x01, 0x08, 0x09, 0x0A, 0x0B, 0x0C, 0x0D,
        0x1F, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0, 0xC1, 0xC2, 0xDF, 0xE0, 0xE1,
        0xED, 0xEE, 0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xFE, 0xFF, 0xE2, 0x82};
    std::string text;
    for (std::size_t left = below(longest + 1); left > 0; --left) {
      text.push_back(static_cast<char>(one_in(4) ? bits() & 0xFFU : pick(kBytes)));
    }
    return text;
  }

  double number() {
    switch (below(4)) {
      case 0:
        return std::bit_cast<double>(bits());
      case 1:
        return static_cast<double>(static_cast<std::int64_t>(bits() % 2'000'000'000) -
                                   1'000'000'000) /
               100;
      case 2:
        return static_cast<double>(static_cast<std::int32_t>(bits()));
      default:
        return pick(std::array{0.0, -0.0, 1e15, 1e16, 1e-4, 1e-5, 5e-324, 1.7976931348623157e308,
                               9007199254740993.0, 0.1, 2.675, 1e300, 4.35, 123456789012345.0});
    }
  }

 private:
  std::mt19937_64 engine_;
};

TEST(JsonDifferential, StringsAreAsTheLibraryWritesThem) {
  Random random(1);
  for (int i = 0; i < 200'000; ++i) {
    const std::string text = random.bytes(i % 2 == 0 ? 6 : 24);
    ASSERT_EQ(tool::json_string(text), written(Json(text)));
  }
  for (unsigned first = 0; first < 256; ++first) {
    for (unsigned second = 0; second < 256; ++second) {
      const std::string text{static_cast<char>(first), static_cast<char>(second), 'x'};
      ASSERT_EQ(tool::json_string(text), written(Json(text))) << first << ' ' << second;
      ASSERT_EQ(tool::json_string(text.substr(0, 2)), written(Json(text.substr(0, 2))));
    }
  }
}

TEST(JsonDifferential, EveryCharacterIsAsTheLibraryWritesIt) {
  for (std::uint32_t c = 0; c < 0x110000; c += c < 0x3000 || c > 0x10FF00 ? 1 : 7) {
    std::string text;
    if (c < 0x80) {
      text = {static_cast<char>(c)};
    } else if (c < 0x800) {
      text = {static_cast<char>(0xC0U | c >> 6U), static_cast<char>(0x80U | (c & 0x3FU))};
    } else if (c < 0x10000) {  // the halves of surrogate pairs too
      text = {static_cast<char>(0xE0U | c >> 12U), static_cast<char>(0x80U | (c >> 6U & 0x3FU)),
              static_cast<char>(0x80U | (c & 0x3FU))};
    } else {
      text = {static_cast<char>(0xF0U | c >> 18U), static_cast<char>(0x80U | (c >> 12U & 0x3FU)),
              static_cast<char>(0x80U | (c >> 6U & 0x3FU)), static_cast<char>(0x80U | (c & 0x3FU))};
    }
    ASSERT_EQ(tool::json_string(text), written(Json(text))) << c;
  }
}

TEST(JsonDifferential, NumbersAreAsTheLibraryWritesThem) {
  Random random(2);
  for (int i = 0; i < 200'000; ++i) expect_as_the_library_writes(Variant(random.number()));
  for (int i = 0; i < 20'000; ++i) {
    const auto whole = static_cast<std::int64_t>(random.bits()) >> random.below(64);
    expect_as_the_library_writes(Variant(whole));
  }
}

/// Trees as a program makes them, of any values.
class Maker {
 public:
  explicit Maker(std::uint32_t seed) : random_(seed) {}

  Variant value(int depth) {
    switch (random_.below(depth > 0 ? 13 : 10)) {
      case 0:
        return {};
      case 1:
        return Variant::Missing();
      case 2:
        return Variant(random_.one_in(2));
      case 3:
        return Variant(static_cast<std::int16_t>(random_.bits()));
      case 4:
        return Variant(static_cast<std::int32_t>(random_.bits()));
      case 5:
        return Variant(static_cast<std::int64_t>(random_.bits()));
      case 6:
        return Variant(random_.number());
      case 7:
        return Variant(Date{static_cast<std::int64_t>(random_.bits() % 255'000'000'000'000)});
      case 8: {
        const std::string text = random_.bytes(7);
        const auto* begin = reinterpret_cast<const std::byte*>(text.data());
        return Variant(Bytes(begin, begin + text.size()));
      }
      case 9:
        return Variant(QualifiedName{"urn:n", random_.bytes(5)});
      case 10:
        return random_.one_in(4) ? Variant(VariantArray()) : Variant(array(depth - 1));
      case 11:
        return random_.one_in(5) ? Variant(SoapNode()) : Variant(node(depth - 1));
      default:
        return Variant(random_.bytes(12));
    }
  }

  SoapNode node(int depth) {
    SoapNode made = SoapNode::make(random_.bytes(8));
    if (random_.one_in(3)) made.Namespace(random_.bytes(6));
    if (depth > 0 && random_.one_in(2)) {
      for (std::size_t left = random_.below(4); left > 0; --left) {
        made.Nodes().Append(node(depth - 1));
      }
    } else if (!random_.one_in(6)) {
      made.Value(value(depth));
    }
    return made;
  }

 private:
  VariantArray array(int depth) {
    std::vector<Variant> items;
    for (std::size_t left = random_.below(4); left > 0; --left) items.push_back(value(depth));
    return VariantArray(std::move(items));
  }

  Random random_;
};

TEST(JsonDifferential, MadeTreesAreAsTheLibraryWritesThem) {
  Maker maker(3);
  for (int i = 0; i < 20'000; ++i) expect_as_the_library_writes(maker.value(4));
}

/// Replies with fields of every type, with texts that are of it and texts that are not.
class ReplyMaker {
 public:
  explicit ReplyMaker(std::uint32_t seed) : random_(seed) {}

  std::string envelope() {
    return "<s:Envelope xmlns:s='http://schemas.xmlsoap.org/soap/envelope/'"
           " xmlns:x='http://www.w3.org/2001/XMLSchema'"
           " xmlns:i='http://www.w3.org/2001/XMLSchema-instance'"
           " xmlns:e='http://schemas.xmlsoap.org/soap/encoding/'><s:Body><r>" +
           element(5) + "</r><shared id='a'>" + element(0) + "</shared><n id='b' i:type='x:int'>" +
           text() + "</n></s:Body></s:Envelope>";
  }

 private:
  std::string text() {
    static constexpr std::array<std::string_view, 22> kTexts{"",
                                                             "0",
                                                             "1",
                                                             "true",
                                                             "-17",
                                                             "+42",
                                                             "1234.50",
                                                             " 7 ",
                                                             "1e300",
                                                             "INF",
                                                             "NaN",
                                                             "x",
                                                             "Bolts &amp; &quot;nuts&quot;",
                                                             "aGk=",
                                                             "aGk",
                                                             "0aFF",
                                                             "a:b",
                                                             "é\xE2\x82\xAC",
                                                             "2007-01-05",
                                                             "2007-01-05T10:11:12",
                                                             "2007-01-05T10:11:12.345Z",
                                                             "line&#10;line\\"};
    return std::string(random_.pick(kTexts));
  }

  std::string type() {
    static constexpr std::array<std::string_view, 16> kTypes{
        "string",    "int",          "boolean", "double", "decimal", "dateTime",
        "date",      "base64Binary", "short",   "long",   "anyType", "unsignedByte",
        "hexBinary", "QName",        "Name",    "float"};
    return "x:" + std::string(random_.pick(kTypes));
  }

  std::string element(int depth) {
    static constexpr std::array<std::string_view, 4> kNames{"Name", "Row", "Größe", "a-b"};
    const std::string name(random_.pick(kNames));
    switch (random_.below(depth > 0 ? 9 : 5)) {
      case 0:
        return "<" + name + "/>";
      case 1:
        return "<" + name + ">" + text() + "</" + name + ">";
      case 2:
        return "<" + name + " i:nil='true'/>";
      case 3:
        return "<q:" + name + " xmlns:q='urn:q\"'>" + text() + "</q:" + name + ">";
      case 4:
        return "<" + name + " i:type='" + type() + "'>" + text() + "</" + name + ">";
      case 5:
        return "<" + name + " href='#" + (random_.one_in(2) ? "a" : "b") + "'/>";
      case 6:
        return "<" + name + " e:arrayType='" + type() + "[3]'>" + elements(depth) + "</" + name +
               ">";
      default:
        return "<" + name + ">" + elements(depth) + "</" + name + ">";
    }
  }

  std::string elements(int depth) {
    std::string all;
    for (std::size_t left = random_.below(5); left > 0; --left) all += element(depth - 1);
    return all;
  }

  Random random_;
};

TEST(JsonDifferential, RepliesAreAsTheLibraryWritesThem) {
  ReplyMaker maker(4);
  int unreadable = 0;
  int arrays = 0;
  for (int i = 0; i < 20'000; ++i) {
    const std::string reply = maker.envelope();
    const SoapEnvelope envelope = SoapEnvelope::make();
    envelope.Parse(reply, "");
    for (const SoapNode& node : envelope.Parameters()) {
      const std::string expected = written(json_of(Variant(node)));
      ASSERT_EQ(tool::json_value(Variant(node)), expected) << reply;
      unreadable += expected.find("\"unreadable\":") != std::string::npos ? 1 : 0;
      arrays += expected.find("\"value\":[") != std::string::npos ? 1 : 0;
    }
  }
  // The replies are worth something only where they have these.
  EXPECT_GT(unreadable, 1000);
  EXPECT_GT(arrays, 1000);
}

}  // namespace
}  // namespace bvconn::test
