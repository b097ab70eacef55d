#include "json_value.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <set>

#include "json_text.h"
#include "status.h"

namespace bvconn::tool {
namespace {

constexpr std::size_t kMaxDepth = 500;

/// Takes the parts of a text of JSON in their order.
class Reader final : public nlohmann::json_sax<Json> {
 public:
  bool null() override { return add({}); }
  bool boolean(bool value) override { return add(value); }
  bool number_integer(number_integer_t value) override { return add(value); }
  bool number_unsigned(number_unsigned_t value) override {
    constexpr std::uint64_t kMax = std::numeric_limits<std::int64_t>::max();
    if (value > kMax) return add(static_cast<double>(value));
    return add(static_cast<std::int64_t>(value));
  }
  bool number_float(number_float_t value, const string_t& /*text*/) override { return add(value); }
  bool string(string_t& value) override { return add(std::move(value)); }
  bool binary(binary_t& /*value*/) override { return false; }
  bool start_object(std::size_t /*size*/) override {
    keys_.emplace_back();
    return begin(JsonValue::Object());
  }
  bool end_object() override {
    keys_.pop_back();
    return end();
  }
  bool start_array(std::size_t /*size*/) override { return begin(JsonValue::Array()); }
  bool end_array() override { return end(); }
  bool key(string_t& name) override {
    if (!keys_.back().insert(name).second) twice_ = name;
    std::get<JsonValue::Object>(open_.back()->content()).emplace_back().first = std::move(name);
    return true;
  }
  bool parse_error(std::size_t, const std::string&,
                   const nlohmann::detail::exception& error) override {
    std::string_view what = error.what();
    what.remove_prefix(std::min(what.find("] ") + 2, what.size()));
    throw UsageError("not JSON: " + std::string(what));
  }

  JsonValue take() {
    if (!twice_.empty()) throw UsageError("the key " + twice_ + " stands twice");
    return std::move(root_);
  }

 private:
  /// The value of the last key, a new item, or the whole.
  JsonValue& place() {
    if (open_.empty()) return root_;
    JsonValue::Content& content = open_.back()->content();
    if (auto* const object = std::get_if<JsonValue::Object>(&content)) return object->back().second;
    return std::get<JsonValue::Array>(content).emplace_back();
  }

  bool add(JsonValue::Content content) {
    place().content() = std::move(content);
    return true;
  }

  bool begin(JsonValue::Content container) {
    if (open_.size() == kMaxDepth) {
      throw UsageError("the JSON nests deeper than " + std::to_string(kMaxDepth));
    }
    JsonValue& value = place();
    value.content() = std::move(container);
    open_.push_back(&value);
    return true;
  }

  bool end() {
    open_.pop_back();
    return true;
  }

  JsonValue root_;
  // What contains the next part, from outside to inside. While one of them is open, nothing is
  // added to those around it, so they stay where they are.
  std::vector<JsonValue*> open_;
  std::vector<std::set<std::string>> keys_;
  std::string twice_;
};

}  // namespace

const JsonValue* JsonValue::find(std::string_view name) const {
  const Object* const members = object();
  if (members == nullptr) return nullptr;
  const auto found = std::find_if(members->begin(), members->end(),
                                  [&](const auto& member) { return member.first == name; });
  return found == members->end() ? nullptr : &found->second;
}

const JsonValue* JsonValue::only_member(std::string_view name) const {
  return object() != nullptr && object()->size() == 1 ? find(name) : nullptr;
}

JsonValue parse_json(std::string_view text) {
  Reader reader;
  Json::sax_parse(text, &reader);
  return reader.take();
}

}  // namespace bvconn::tool
