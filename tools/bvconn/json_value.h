#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace bvconn::tool {

/// A value that was read from JSON. Unlike the JSON library's own, which takes memory to be
/// destroyed, it lets a lack of memory be an error of the line that it was met in.
class JsonValue {
 public:
  using Array = std::vector<JsonValue>;
  /// In the order in which they were written.
  using Object = std::vector<std::pair<std::string, JsonValue>>;
  using Content =
      std::variant<std::monostate, bool, std::int64_t, double, std::string, Array, Object>;

  JsonValue() = default;
  explicit JsonValue(Content content) : content_(std::move(content)) {}

  bool is_null() const { return std::holds_alternative<std::monostate>(content_); }
  // Each null where the value is none.
  const bool* boolean() const { return std::get_if<bool>(&content_); }
  /// A number without point or exponent that has room in 64 bits.
  const std::int64_t* integer() const { return std::get_if<std::int64_t>(&content_); }
  /// Any other number.
  const double* number() const { return std::get_if<double>(&content_); }
  const std::string* text() const { return std::get_if<std::string>(&content_); }
  const Array* array() const { return std::get_if<Array>(&content_); }
  const Object* object() const { return std::get_if<Object>(&content_); }

  /// A member of an object; null where there is none.
  const JsonValue* find(std::string_view name) const;
  /// The value of an object with exactly this member, or null.
  const JsonValue* only_member(std::string_view name) const;

  Content& content() { return content_; }

 private:
  Content content_;
};

/// Reads one line of JSON. Fails for a key that an object has twice, since it would be anybody's
/// guess which one is meant, and for arrays and objects more than 500 deep, which no request comes
/// near: values are destroyed by recursion.
/// @throws UsageError
JsonValue parse_json(std::string_view text);

}  // namespace bvconn::tool
