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
#include "bvconn/automation/value_bridge.h"

/// How a class is declared: its members once, in slot order. Types come from the member pointers,
/// so a declaration holds the names and which arguments may be left out. The macros at the end of
/// this file make a member's name and the pointer to it one word; `C` is the class:
///
///     using C = BVInvoiceConnector;
///     ClassBuilder<C>("BVInvoiceConnector")
///         .BVCONN_OPERATION(GetInvoice, "aServerURL", "aSessionID", "strInvoiceUID")
///         .BVCONN_OPERATION(InvoiceSearch, "aServerURL", "aSessionID",
///                           BVCONN_OPTIONAL(InvoiceSearchCriteria, strInvoiceNumber, strStatus))
///         .take();
///
/// A name with a trailing "?" is an optional argument, whose default is its type's ("", false, 0,
/// an empty reference, Missing for a variant) unless one is given: `{"aSessionID?", "NOTHING"}`.
/// The fields of an aggregate stand in the aggregate's place.
namespace bvconn::automation {

namespace detail {

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

/// One field of an aggregate.
struct DeclaredField {
  std::string name;
  ValueType type = ValueType::kNone;
  bool optional = false;
  Value default_value;
  void (*assign)(void* aggregate, const Value& value) = nullptr;
  std::shared_ptr<void> (*make)() = nullptr;
};
using DeclaredFields = std::vector<DeclaredField>;

/// What a declaration says about one argument of the C++ interface: its name, with a "?" behind it
/// where it may be left out and then its default; or, where it is an aggregate, the fields.
struct DeclaredArgument {
  DeclaredArgument(const char* name_and_mark) : text(name_and_mark) {}
  DeclaredArgument(const char* name_and_mark, Variant value)
      : text(name_and_mark), default_value(std::move(value)) {}
  DeclaredArgument(DeclaredFields all) : fields(std::move(all)) {}
  DeclaredArgument(std::initializer_list<DeclaredFields> parts) {
    for (const DeclaredFields& part : parts) fields.insert(fields.end(), part.begin(), part.end());
  }

  std::string_view text;
  Value default_value;  ///< nothing: the default of the type
  DeclaredFields fields;
};

/// A field by a pointer to it. The default of an optional one is what the aggregate initialises the
/// field with.
template <auto member>
DeclaredField field(const char* name, bool optional) {
  using Class = typename detail::FieldPointer<decltype(member)>::Class;
  using Bridge = detail::BridgeOf<typename detail::FieldPointer<decltype(member)>::Type>;
  return {.name = name,
          .type = Bridge::kType,
          .optional = optional,
          .default_value = optional ? Bridge::to(Class{}.*member) : Value(),
          .assign =
              [](void* aggregate, const Value& value) {
                static_cast<Class*>(aggregate)->*member = Bridge::from(value);
              },
          .make = []() -> std::shared_ptr<void> { return std::make_shared<Class>(); }};
}

namespace detail {

/// What of a declaration does not depend on the class.
class MemberList {
 public:
  void add_callable(MemberKind kind, std::string_view name, ValueType result,
                    std::span<const ValueType> types, std::span<const DeclaredArgument> arguments,
                    Value (*invoke)(void*, const void* const*));
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
    return callable<function>(MemberKind::kOperation, name, {});
  }
  template <auto function, std::size_t n>
  ClassBuilder& operation(std::string_view name, const DeclaredArgument (&arguments)[n]) {
    static_assert(n == detail::Signature<decltype(function)>::kArity,
                  "an operation names each of its arguments");
    return callable<function>(MemberKind::kOperation, name, arguments);
  }
  /// A property that takes arguments, so that it is called and not read.
  template <auto function, std::size_t n>
  ClassBuilder& property_with(std::string_view name, const DeclaredArgument (&arguments)[n]) {
    static_assert(n == detail::Signature<decltype(function)>::kArity,
                  "a property names each of its arguments");
    return callable<function>(MemberKind::kProperty, name, arguments);
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
                         std::span<const DeclaredArgument> arguments) {
    using Signature = detail::Signature<decltype(function)>;
    static_assert(
        Signature::kResult != ValueType::kNone || std::is_void_v<typename Signature::Result>,
        "the result's type has no form outside the library");
    list_.add_callable(kind, name, Signature::kResult,
                       std::span(Signature::kArguments, Signature::kArity), arguments,
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

// Members of the class `C`, whose names stand once.
#define BVCONN_OPERATION(name, ...) operation<&C::name>(#name __VA_OPT__(, {__VA_ARGS__}))
#define BVCONN_PROPERTY(type, name) property<type, &C::name, &C::name>(#name)
#define BVCONN_PROPERTY_WITH(name, ...) property_with<&C::name>(#name, {__VA_ARGS__})
#define BVCONN_READ_ONLY(name) read_only<&C::name>(#name)
#define BVCONN_WRITE_ONLY(name) write_only<&C::name>(#name)
#define BVCONN_CONSTANT(name) constant(#name, &C::name)
#define BVCONN_EVENT(name) event<&C::name>(#name)

// Fields of an aggregate that may be left out, and fields that may not. Where an aggregate has
// both: `{BVCONN_REQUIRED(…), BVCONN_OPTIONAL(…)}`.
#define BVCONN_OPTIONAL(aggregate, ...) BVCONN_FIELDS(aggregate, true, __VA_ARGS__)
#define BVCONN_REQUIRED(aggregate, ...) BVCONN_FIELDS(aggregate, false, __VA_ARGS__)

// The preprocessor does not repeat by itself: each reading of the list writes one field and leaves
// a call for the next reading. More names than the readings reach do not compile.
#define BVCONN_FIELDS(aggregate, optional, ...)                       \
  bvconn::automation::DeclaredFields {                                \
    BVCONN_READ_AGAIN(BVCONN_FIELD(aggregate, optional, __VA_ARGS__)) \
  }
#define BVCONN_FIELD(aggregate, optional, name, ...)            \
  bvconn::automation::field<&aggregate::name>(#name, optional), \
      __VA_OPT__(BVCONN_FIELD_LATER BVCONN_NO_ARGUMENTS(aggregate, optional, __VA_ARGS__))
#define BVCONN_FIELD_LATER() BVCONN_FIELD
#define BVCONN_NO_ARGUMENTS ()
#define BVCONN_READ_AGAIN(...) \
  BVCONN_READ_9(BVCONN_READ_9(BVCONN_READ_9(BVCONN_READ_9(__VA_ARGS__))))
#define BVCONN_READ_9(...) BVCONN_READ_3(BVCONN_READ_3(BVCONN_READ_3(__VA_ARGS__)))
#define BVCONN_READ_3(...) BVCONN_READ(BVCONN_READ(BVCONN_READ(__VA_ARGS__)))
#define BVCONN_READ(...) __VA_ARGS__
