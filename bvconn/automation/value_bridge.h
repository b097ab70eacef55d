#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include "bvconn/automation/interface.h"

namespace bvconn::automation::detail {

/// How a type of the C++ interface travels as a `Value`. A type without one is an aggregate. What
/// `from` is given fits its type, so that it does not fail.
template <class T>
struct Bridge {
  static constexpr ValueType kType = ValueType::kNone;
};

template <>
struct Bridge<void> {
  static constexpr ValueType kType = ValueType::kNone;
};
template <>
struct Bridge<std::string> {
  static constexpr ValueType kType = ValueType::kString;
  static const std::string& from(const Value& value) { return std::get<Variant>(value).string(); }
  static Value to(std::string text) { return Variant(std::move(text)); }
};
template <>
struct Bridge<std::string_view> {
  static constexpr ValueType kType = ValueType::kString;
  static std::string_view from(const Value& value) { return std::get<Variant>(value).string(); }
  static Value to(std::string_view text) { return Variant(text); }
};
template <>
struct Bridge<bool> {
  static constexpr ValueType kType = ValueType::kBoolean;
  static bool from(const Value& value) { return std::get<Variant>(value).boolean(); }
  static Value to(bool value) { return Variant(value); }
};
template <>
struct Bridge<std::int16_t> {
  static constexpr ValueType kType = ValueType::kInt16;
  static std::int16_t from(const Value& value) { return std::get<Variant>(value).int16(); }
  static Value to(std::int16_t value) { return Variant(value); }
};
template <>
struct Bridge<std::int32_t> {
  static constexpr ValueType kType = ValueType::kInt32;
  static std::int32_t from(const Value& value) { return std::get<Variant>(value).int32(); }
  static Value to(std::int32_t value) { return Variant(value); }
};
template <>
struct Bridge<Variant> {
  static constexpr ValueType kType = ValueType::kVariant;
  static const Variant& from(const Value& value) { return std::get<Variant>(value); }
  static Value to(Variant value) { return value; }
};
template <>
struct Bridge<SoapNode> {
  static constexpr ValueType kType = ValueType::kSoapNode;
  static const SoapNode& from(const Value& value) { return std::get<Variant>(value).node(); }
  static Value to(SoapNode node) { return Variant(std::move(node)); }
};
template <>
struct Bridge<StringArray> {
  static constexpr ValueType kType = ValueType::kStringArray;
  static const StringArray& from(const Value& value) { return std::get<StringArray>(value); }
  static Value to(StringArray array) { return array; }
};
template <>
struct Bridge<XMLDocument*> {
  static constexpr ValueType kType = ValueType::kXMLDocument;
  static XMLDocument* from(const Value& value) { return std::get<XMLDocument*>(value); }
};
template <>
struct Bridge<SoapEnvelope> {
  static constexpr ValueType kType = ValueType::kSoapEnvelope;
  static Value to(SoapEnvelope envelope) { return envelope; }
};
template <>
struct Bridge<std::shared_ptr<HTTPTransport>> {
  static constexpr ValueType kType = ValueType::kHTTPTransport;
  static Value to(std::shared_ptr<HTTPTransport> transport) { return transport; }
};
template <>
struct Bridge<std::shared_ptr<ServiceObject>> {
  static constexpr ValueType kType = ValueType::kObject;
  static Value to(std::shared_ptr<ServiceObject> object) { return object; }
};

template <class T>
using BridgeOf = Bridge<std::remove_cvref_t<T>>;

}  // namespace bvconn::automation::detail

namespace bvconn::automation {

/// The type that a parameter of the C++ interface has outside the library.
template <class T>
inline constexpr ValueType kValueTypeOf = detail::BridgeOf<T>::kType;

}  // namespace bvconn::automation
