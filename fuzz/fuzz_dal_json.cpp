// What the data access layer's HTTP form reads and writes of JSON: the error that a body tells of,
// and the arguments of a call. A second reader of JSON is the witness for both.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/torvexlib/json_arguments.h"
#include "fuzzing.h"

namespace {

using namespace bvconn;  // NOLINT(google-build-using-namespace): the interface under test
using fuzz::Choices;
using fuzz::require;
using nlohmann::json;

void read_error(const std::string& body) {
  const std::optional<Error> error = detail::json_error(body);
  if (!error) return;
  const json witness = json::parse(body, nullptr, false);
  require(witness.is_object(), "an error in what is no object", body);
  const auto number = witness.find("number");
  require(number != witness.end() && number->is_number(), "an error without a number", body);
  require(!number->is_number_integer() || static_cast<std::uint32_t>(number->get<std::int64_t>()) ==
                                              static_cast<std::uint32_t>(error->number),
          "an error with another number", body);
  const auto text = [&](const char* key) {
    const auto member = witness.find(key);
    return member != witness.end() && member->is_string() ? member->get<std::string>() : "";
  };
  require(error->source == text("source"), "an error with another source", body);
  require(error->description == text("description"), "an error with other words", body);
}

Variant make_value(Choices& choices, int depth) {
  switch (choices.below(depth < 4 ? 9 : 8)) {
    case 0:
      return {};
    case 1:
      return Variant::Missing();
    case 2:
      return choices.flag();
    case 3:
      return static_cast<std::int16_t>(choices.number(2));
    case 4:
      return static_cast<std::int32_t>(choices.number(4));
    case 5:
      return static_cast<std::int64_t>(choices.number(8));
    case 6:
      return static_cast<double>(static_cast<std::int32_t>(choices.number(4))) / 1024;
    case 7:
      return choices.text(64);
    default: {
      std::vector<Variant> items(choices.below(5));
      for (Variant& item : items) item = make_value(choices, depth + 1);
      return VariantArray(std::move(items));
    }
  }
}

bool is_writable(const Variant& value) {
  if (value.is(Variant::Type::kString)) return detail::is_utf8(value.string());
  if (!value.is(Variant::Type::kArray)) return true;
  for (const Variant& item : value.array().items()) {
    if (!is_writable(item)) return false;
  }
  return true;
}

bool matches(const Variant& value, const json& witness) {
  switch (value.type()) {
    case Variant::Type::kBoolean:
      return witness == value.boolean();
    case Variant::Type::kInt16:
    case Variant::Type::kInt32:
    case Variant::Type::kInt64:
      return witness.is_number_integer() &&
             conversions::integer_text(witness.get<std::int64_t>()) == to_text(value);
    case Variant::Type::kDouble:
      return witness.is_number() && witness.get<double>() == value.number();
    case Variant::Type::kString:
      return witness == value.string();
    case Variant::Type::kArray: {
      const auto& items = value.array().items();
      if (!witness.is_array() || witness.size() != items.size()) return false;
      for (std::size_t i = 0; i < items.size(); ++i) {
        if (!matches(items[i], witness[i])) return false;
      }
      return true;
    }
    default:
      return witness.is_null();
  }
}

void write_arguments(Choices& choices) {
  std::vector<Variant> values;
  while (!choices.done() && values.size() < 40) values.push_back(make_value(choices, 0));
  const Variant whole{VariantArray(values)};
  try {
    const std::string body = detail::json_arguments("SearchService.SearchForBrands", values);
    require(is_writable(whole), "arguments that JSON has no form for", body);
    const json witness = json::parse(body, nullptr, false);
    require(witness.is_object() && witness.size() == 1 && witness.contains("arguments"),
            "a body of another form", body);
    require(matches(whole, witness["arguments"]), "arguments that read differently", body);
  } catch (const Error& error) {
    fuzz::require_error(error, {error_numbers::kTypeMismatch});
    require(!is_writable(whole), "arguments that were refused without need", error.description);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Choices choices(data, size);
  if (size == 0 || data[0] != '#') {
    read_error(std::string(choices.rest()));
    return 0;
  }
  choices.byte();
  write_arguments(choices);
  return 0;
}
