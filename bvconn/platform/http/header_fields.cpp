#include "bvconn/platform/http/header_fields.h"

#include "bvconn/platform/conversions/conversions.h"

namespace bvconn::detail {
namespace {

constexpr std::size_t kUsualText = 256;
constexpr std::size_t kUsualFields = 8;

bool is_blank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

}  // namespace

void HeaderFields::add(std::string_view name, std::string_view value) {
  if (fields_.empty()) {
    text_.reserve(kUsualText);
    fields_.reserve(kUsualFields);
  }
  fields_.push_back({.begin = static_cast<std::uint32_t>(text_.size()),
                     .name_size = static_cast<std::uint32_t>(name.size()),
                     .value_size = static_cast<std::uint32_t>(value.size())});
  text_.append(name).append(value);
}

void HeaderFields::clear() {
  text_.clear();
  fields_.clear();
}

std::string_view HeaderFields::last(std::string_view name) const {
  const std::string_view text = text_;
  for (auto field = fields_.rbegin(); field != fields_.rend(); ++field) {
    if (field->name_size == name.size() &&
        conversions::equal_ignoring_case(text.substr(field->begin, name.size()), name)) {
      return text.substr(field->begin + name.size(), field->value_size);
    }
  }
  return {};
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace bvconn::detail
