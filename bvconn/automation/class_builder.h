#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "bvconn/automation/interface.h"

/// How a class is declared: its members once, in slot order, one line each. Types come from the
/// member pointers, so a declaration holds the names and which arguments may be left out:
///
///     ClassBuilder<BVInvoiceConnector>("BVInvoiceConnector")
///         .operation<&BVInvoiceConnector::GetInvoice>("GetInvoice", {"aServerURL", "aSessionID",
///         "strInvoiceUID"}) .take();
///
/// A name with a trailing "?" is an optional argument, whose default is its type's ("", false, 0,
/// an empty reference, Missing for a variant) unless one is given: `{"aSessionID?", "NOTHING"}`.
namespace bvconn::automation {

/// The name of an argument as a declaration gives it.
struct ArgumentSpec {
  ArgumentSpec(const char* name_and_mark) : text(name_and_mark) {}
  ArgumentSpec(const char* name_and_mark, Variant value)
      : text(name_and_mark), default_value(std::move(value)) {}

  std::string_view text;
  Value default_value;  ///< nothing: the default of the type
};

namespace detail {

/// How a type of the C++ interface travels as a `Value`. A type without one is an aggregate.
template <class T>
struct Bridge {
  static constexpr ValueType kType = ValueType::kNone;
};

// What a value holds; it fits, so these do not fail.
const std::string& held_string(const Value& value);
bool held_boolean(const Value& value);
std::int16_t held_int16(const Value& value);
std::int32_t held_int32(const Value& value);
const Variant& held_variant(const Value& value);
const SoapNode& held_node(const Value& value);
const StringArray& held_array(const Value& value);
XMLDocument* held_document(const Value& value);

template <>
struct Bridge<void> {
  static constexpr ValueType kType = ValueType::kNone;
};
template <>
struct Bridge<std::string> {
  static constexpr ValueType kType = ValueType::kString;
  static const std::string& from(const Value& value) { return held_string(value); }
  static Value to(std::string text) { return Variant(std::move(text)); }
};
template <>
struct Bridge<std::string_view> {
  static constexpr ValueType kType = ValueType::kString;
  static std::string_view from(const Value& value) { return held_string(value); }
  static Value to(std::string_view text) { return Variant(text); }
};
template <>
struct Bridge<bool> {
  static constexpr ValueType kType = ValueType::kBoolean;
  static bool from(const Value& value) { return held_boolean(value); }
  static Value to(bool value) { return Variant(value); }
};
template <>
struct Bridge<std::int16_t> {
  static constexpr ValueType kType = ValueType::kInt16;
  static std::int16_t from(const Value& value) { return held_int16(value); }
  static Value to(std::int16_t value) { return Variant(value); }
};
template <>
struct Bridge<std::int32_t> {
  static constexpr ValueType kType = ValueType::kInt32;
  static std::int32_t from(const Value& value) { return held_int32(value); }
  static Value to(std::int32_t value) { return Variant(value); }
};
template <>
struct Bridge<Variant> {
  static constexpr ValueType kType = ValueType::kVariant;
  static const Variant& from(const Value& value) { return held_variant(value); }
  static Value to(Variant value) { return value; }
};
template <>
struct Bridge<SoapNode> {
  static constexpr ValueType kType = ValueType::kSoapNode;
  static const SoapNode& from(const Value& value) { return held_node(value); }
  static Value to(SoapNode node) { return Variant(std::move(node)); }
};
template <>
struct Bridge<StringArray> {
  static constexpr ValueType kType = ValueType::kStringArray;
  static const StringArray& from(const Value& value) { return held_array(value); }
  static Value to(StringArray array) { return array; }
};
template <>
struct Bridge<XMLDocument*> {
  static constexpr ValueType kType = ValueType::kXMLDocument;
  static XMLDocument* from(const Value& value) { return held_document(value); }
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

template <class T>
concept IsAggregate =
    BridgeOf<T>::kType == ValueType::kNone&& std::is_class_v<std::remove_cvref_t<T>>;

template <class T>
decltype(auto) from_slot(const void* slot) {
  if constexpr (IsAggregate<T>) {
    return *static_cast<const std::remove_cvref_t<T>*>(slot);
  } else {
    return BridgeOf<T>::from(*static_cast<const Value*>(slot));
  }
}

/// What a member pointer says about the C++ interface.
template <class F>
struct Signature;

template <class C, class R, class... A>
struct Signature<R (C::*)(A...)> {
  using Result = R;
  static constexpr std::size_t kArity = sizeof...(A);
  static constexpr ValueType kResult = BridgeOf<R>::kType;
  static constexpr ValueType kArguments[sizeof...(A) + 1] = {BridgeOf<A>::kType...};

  template <auto function, std::size_t... I>
  static Value call(C& object, const void* const* slots, std::index_sequence<I...>) {
    (void)slots;
    if constexpr (std::is_void_v<R>) {
      (object.*function)(from_slot<A>(slots[I])...);
      return {};
    } else {
      return BridgeOf<R>::to((object.*function)(from_slot<A>(slots[I])...));
    }
  }

  template <auto function>
  static Value thunk(void* object, const void* const* slots) {
    return call<function>(*static_cast<C*>(object), slots, std::index_sequence_for<A...>());
  }
};

template <class C, class R, class... A>
struct Signature<R (C::*)(A...) const> : Signature<R (C::*)(A...)> {};

template <class T>
struct FieldPointer;

template <class C, class T>
struct FieldPointer<T C::*> {
  using Class = C;
  using Type = T;
};

}  // namespace detail

/// One field of an aggregate; made by `field`.
struct FieldSpec {
  std::string_view text;
  ValueType type = ValueType::kNone;
  Value default_value;
  void (*assign)(void* aggregate, const Value& value) = nullptr;
  std::shared_ptr<void> (*make)() = nullptr;
};

/// A field of an operation's aggregate, by a pointer to it: `field<&K::strStatus>("strStatus?")`.
/// The default of an optional one is what the aggregate initialises the field with.
template <auto member>
FieldSpec field(const char* name_and_mark) {
  using Class = typename detail::FieldPointer<decltype(member)>::Class;
  using Bridge = detail::BridgeOf<typename detail::FieldPointer<decltype(member)>::Type>;
  FieldSpec spec{.text = name_and_mark, .type = Bridge::kType, .default_value = {}};
  spec.default_value = Bridge::to(Class{}.*member);
  spec.assign = [](void* aggregate, const Value& value) {
    static_cast<Class*>(aggregate)->*member = Bridge::from(value);
  };
  spec.make = []() -> std::shared_ptr<void> { return std::make_shared<Class>(); };
  return spec;
}

namespace detail {

/// What of a declaration does not depend on the class.
class MemberList {
 public:
  void add_callable(MemberKind kind, std::string_view name, ValueType result,
                    std::span<const ValueType> types, std::span<const ArgumentSpec> arguments,
                    std::span<const FieldSpec> fields, Value (*invoke)(void*, const void* const*));
  void add_property(std::string_view name, ValueType type, Value (*get)(void*),
                    void (*set)(void*, const Value&));
  void add_constant(std::string_view name, std::string value);
  void add_event(std::string_view name, void (*connect)(void*, std::function<void()>));

  std::vector<Member> members;
};

}  // namespace detail

template <class C>
class ClassBuilder {
 public:
  explicit ClassBuilder(std::string_view name) {
    info_.name = name;
    info_.make = []() -> std::shared_ptr<void> { return std::make_shared<C>(); };
  }

  /// The class is usable by its name: all instances show the same.
  ClassBuilder& predeclared() {
    info_.predeclared = true;
    return *this;
  }

  template <auto function>
  ClassBuilder& operation(std::string_view name) {
    return callable<function>(MemberKind::kOperation, name, {}, {});
  }
  template <auto function, std::size_t n>
  ClassBuilder& operation(std::string_view name, const ArgumentSpec (&arguments)[n]) {
    static_assert(n == detail::Signature<decltype(function)>::kArity,
                  "an operation names each of its arguments");
    return callable<function>(MemberKind::kOperation, name, arguments, {});
  }
  /// An operation with an aggregate: the aggregate's fields take its place among the arguments.
  template <auto function, std::size_t n, std::size_t fields_n>
  ClassBuilder& operation(std::string_view name, const ArgumentSpec (&arguments)[n],
                          const FieldSpec (&fields)[fields_n]) {
    static_assert(n + 1 == detail::Signature<decltype(function)>::kArity,
                  "an operation names each of its arguments but the aggregate");
    return callable<function>(MemberKind::kOperation, name, arguments, fields);
  }
  /// A property that takes arguments, so that it is called and not read.
  template <auto function, std::size_t n>
  ClassBuilder& property_with(std::string_view name, const ArgumentSpec (&arguments)[n]) {
    static_assert(n == detail::Signature<decltype(function)>::kArity,
                  "a property names each of its arguments");
    return callable<function>(MemberKind::kProperty, name, arguments, {});
  }

  template <class T, T (C::*get)() const,
            void (C::*set)(typename std::conditional_t<std::is_same_v<T, std::string>,
                                                       std::type_identity<std::string_view>,
                                                       std::type_identity<T>>::type)>
  ClassBuilder& property(std::string_view name) {
    list_.add_property(name, detail::BridgeOf<T>::kType, &read<get>, &write<set, T>);
    return *this;
  }
  template <auto get>
  ClassBuilder& read_only(std::string_view name) {
    list_.add_property(name, detail::Signature<decltype(get)>::kResult, &read<get>, nullptr);
    return *this;
  }
  template <auto set>
  ClassBuilder& write_only(std::string_view name) {
    list_.add_property(name, detail::Signature<decltype(set)>::kArguments[0], nullptr,
                       [](void* object, const Value& value) {
                         const void* slot = &value;
                         detail::Signature<decltype(set)>::template thunk<set>(object, &slot);
                       });
    return *this;
  }
  /// A catalogue's row: a property whose value never changes.
  ClassBuilder& constant(std::string_view name, std::string (C::*row)() const) {
    list_.add_constant(name, (C().*row)());
    return *this;
  }
  template <std::function<void()> C::*event_member>
  ClassBuilder& event(std::string_view name) {
    list_.add_event(name, [](void* object, std::function<void()> handler) {
      static_cast<C*>(object)->*event_member = std::move(handler);
    });
    return *this;
  }

  ClassInfo take() {
    info_.members = std::move(list_.members);
    return std::move(info_);
  }

 private:
  template <auto function>
  ClassBuilder& callable(MemberKind kind, std::string_view name,
                         std::span<const ArgumentSpec> arguments,
                         std::span<const FieldSpec> fields) {
    using Signature = detail::Signature<decltype(function)>;
    static_assert(
        Signature::kResult != ValueType::kNone || std::is_void_v<typename Signature::Result>,
        "the result's type has no form outside the library");
    list_.add_callable(kind, name, Signature::kResult,
                       std::span(Signature::kArguments, Signature::kArity), arguments, fields,
                       &Signature::template thunk<function>);
    return *this;
  }

  template <auto get>
  static Value read(void* object) {
    return detail::Signature<decltype(get)>::template thunk<get>(object, nullptr);
  }
  template <auto set, class T>
  static void write(void* object, const Value& value) {
    (static_cast<C*>(object)->*set)(detail::BridgeOf<T>::from(value));
  }

  ClassInfo info_;
  detail::MemberList list_;
};

}  // namespace bvconn::automation
