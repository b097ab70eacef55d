#include "bvconn/platform/soap/variant.h"

#include <array>
#include <limits>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/decimal.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/moment_text.h"

namespace bvconn {

namespace {

[[noreturn]] void mismatch(Variant::Type held, std::string_view wanted) {
  std::string description = "Type mismatch: the value is ";
  description += type_name(held);
  description += ", not ";
  description += wanted;
  throw Error(error_numbers::kTypeMismatch, "BVConn", description);
}

template <class Integer>
Integer narrow(std::int64_t value, std::string_view type) {
  if (value < std::numeric_limits<Integer>::min() || value > std::numeric_limits<Integer>::max()) {
    std::string description = "Overflow: " + conversions::integer_text(value) + " does not fit ";
    description += type;
    throw Error(error_numbers::kOverflow, "BVConn", description);
  }
  return static_cast<Integer>(value);
}

/// The whole number that a value of these types is; true is -1, as hosts have it.
std::int64_t whole_number(const Variant& value) {
  switch (value.type()) {
    case Variant::Type::kBoolean:
      return value.boolean() ? -1 : 0;
    case Variant::Type::kInt16:
      return value.int16();
    case Variant::Type::kInt32:
      return value.int32();
    case Variant::Type::kInt64:
      return value.int64();
    default:
      return 0;
  }
}

bool is_text(const Variant& value) {
  return value.is(Variant::Type::kString) || value.is(Variant::Type::kQualifiedName);
}

/// The text of a value for which `is_text` holds.
const std::string& text_in(const Variant& value) {
  return value.is(Variant::Type::kString) ? value.string() : value.qualified_name().local;
}

bool is_whole(const Variant& value) {
  switch (value.type()) {
    case Variant::Type::kEmpty:
    case Variant::Type::kBoolean:
    case Variant::Type::kInt16:
    case Variant::Type::kInt32:
    case Variant::Type::kInt64:
      return true;
    default:
      return false;
  }
}

}  // namespace

std::int64_t StringArray::upper_bound() const {
  if (!allocated_) {
    throw Error(error_numbers::kSubscriptOutOfRange, "BVConn",
                "Subscript out of range: the array was never allocated");
  }
  return static_cast<std::int64_t>(items_.size()) - 1;
}

VariantArray::VariantArray() = default;
VariantArray::VariantArray(std::vector<Variant> items)
    : allocated_(true), items_(std::make_unique<std::vector<Variant>>(std::move(items))) {}
VariantArray::VariantArray(const VariantArray& other)
    : allocated_(other.allocated_),
      items_(other.items_ ? std::make_unique<std::vector<Variant>>(*other.items_) : nullptr) {}
VariantArray::VariantArray(VariantArray&& other) noexcept
    : allocated_(std::exchange(other.allocated_, false)), items_(std::move(other.items_)) {}
VariantArray& VariantArray::operator=(const VariantArray& other) {
  return *this = VariantArray(other);
}
VariantArray& VariantArray::operator=(VariantArray&& other) noexcept {
  allocated_ = std::exchange(other.allocated_, false);
  items_ = std::move(other.items_);
  return *this;
}
VariantArray::~VariantArray() = default;

std::size_t VariantArray::size() const {
  return items().size();
}

const std::vector<Variant>& VariantArray::items() const {
  static const std::vector<Variant> kNone;
  return items_ ? *items_ : kNone;
}

bool operator==(const VariantArray& a, const VariantArray& b) {
  return a.allocated_ == b.allocated_ && a.items() == b.items();
}

Variant::Variant(Missing) : value_(Missing{}) {}

Variant::Variant(const StringArray& array) {
  if (!array.allocated()) {
    value_ = VariantArray();
    return;
  }
  value_ = VariantArray(std::vector<Variant>(array.items().begin(), array.items().end()));
}

std::string_view type_name(Variant::Type type) {
  constexpr std::array<std::string_view, 13> kNames{
      "empty",  "missing", "boolean", "int16", "int32", "int64",         "double",
      "string", "date",    "bytes",   "array", "node",  "qualified name"};
  return kNames[static_cast<std::size_t>(type)];
}

template <Variant::Type kWanted, class Held>
static const auto& held_as(const Variant& variant, const Held& held) {
  if (!variant.is(kWanted)) mismatch(variant.type(), type_name(kWanted));
  return std::get<static_cast<std::size_t>(kWanted)>(held);
}

bool Variant::boolean() const {
  return held_as<Type::kBoolean>(*this, value_);
}
std::int16_t Variant::int16() const {
  return held_as<Type::kInt16>(*this, value_);
}
std::int32_t Variant::int32() const {
  return held_as<Type::kInt32>(*this, value_);
}
std::int64_t Variant::int64() const {
  return held_as<Type::kInt64>(*this, value_);
}
double Variant::number() const {
  return held_as<Type::kDouble>(*this, value_);
}
const std::string& Variant::string() const {
  return held_as<Type::kString>(*this, value_);
}
Date Variant::date() const {
  return held_as<Type::kDate>(*this, value_);
}
const Bytes& Variant::bytes() const {
  return held_as<Type::kBytes>(*this, value_);
}
const VariantArray& Variant::array() const {
  return held_as<Type::kArray>(*this, value_);
}
const SoapNode& Variant::node() const {
  return held_as<Type::kNode>(*this, value_);
}
const QualifiedName& Variant::qualified_name() const {
  return held_as<Type::kQualifiedName>(*this, value_);
}

std::string to_text(const Variant& value) {
  switch (value.type()) {
    case Variant::Type::kEmpty:
      return {};
    case Variant::Type::kBoolean:
      return conversions::boolean_text(value.boolean());
    case Variant::Type::kInt16:
    case Variant::Type::kInt32:
    case Variant::Type::kInt64:
      return conversions::integer_text(whole_number(value));
    case Variant::Type::kDouble:
      return conversions::double_text(value.number());
    case Variant::Type::kString:
    case Variant::Type::kQualifiedName:
      return text_in(value);
    case Variant::Type::kDate:
      return conversions::date_text(value.date());
    default:
      mismatch(value.type(), "text");
  }
}

bool to_boolean(const Variant& value) {
  if (is_whole(value)) return whole_number(value) != 0;
  if (value.is(Variant::Type::kDouble)) return value.number() != 0;
  if (is_text(value)) return conversions::text_to_boolean(text_in(value));
  mismatch(value.type(), "a boolean");
}

std::int16_t to_int16(const Variant& value) {
  if (is_whole(value)) return narrow<std::int16_t>(whole_number(value), "int16");
  if (value.is(Variant::Type::kDouble)) return conversions::double_to_int16(value.number());
  if (is_text(value)) return conversions::text_to_int16(text_in(value));
  mismatch(value.type(), "a number");
}

std::int32_t to_int32(const Variant& value) {
  if (is_whole(value)) return narrow<std::int32_t>(whole_number(value), "int32");
  if (value.is(Variant::Type::kDouble)) return conversions::double_to_int32(value.number());
  if (is_text(value)) return conversions::text_to_int32(text_in(value));
  mismatch(value.type(), "a number");
}

double to_double(const Variant& value) {
  if (is_whole(value)) return static_cast<double>(whole_number(value));
  if (value.is(Variant::Type::kDouble)) return value.number();
  if (is_text(value)) return conversions::text_to_double(text_in(value));
  mismatch(value.type(), "a number");
}

Date to_date(const Variant& value) {
  if (value.is(Variant::Type::kDate)) return value.date();
  if (!is_text(value)) mismatch(value.type(), "a date");
  const auto moment = detail::date_time_of(detail::trim_white(text_in(value)));
  return moment ? *moment : conversions::text_to_date(text_in(value));
}

SoapNode to_node(const Variant& value) {
  return value.node();
}

}  // namespace bvconn
