#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "bvconn/platform/export.h"
#include "bvconn/platform/http/http_transport.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "bvconn/platform/torvexlib/service_object.h"

/// The public interface as data: every class with its members in slot order, and a way to call each
/// of them by name or by index. Names are those of the C++ interface, letter for letter.
namespace bvconn::automation {

/// The types that an argument, a result or a property can have.
enum class ValueType {
  kNone,
  kString,
  kBoolean,
  kInt16,
  kInt32,
  kVariant,
  kStringArray,
  kSoapNode,
  kSoapEnvelope,
  kHTTPTransport,
  kXMLDocument,
  kObject,  ///< a service object
};

/// "string", "int16", "string[]", "SoapNode", …: the type's name outside the library.
BVCONN_EXPORT std::string_view type_name(ValueType type);

/// What goes into a call and comes out of it.
///
/// Strings, booleans, integers, variants and nodes travel as a `Variant` that holds exactly the
/// type asked for (a SoapNode argument holds a node, which may be an empty reference); string[] as
/// a `StringArray`; an XML document as a pointer to the caller's document, or null. The first
/// alternative is "nothing": as an argument it stands for one that was left out, as a result for
/// none.
using Value =
    std::variant<std::monostate, Variant, StringArray, SoapEnvelope, std::shared_ptr<HTTPTransport>,
                 XMLDocument*, std::shared_ptr<ServiceObject>>;

/// Whether the value can be passed where this type is asked for.
BVCONN_EXPORT bool fits(const Value& value, ValueType type);

struct Argument {
  std::string name;
  ValueType type = ValueType::kNone;
  bool optional = false;
  Value default_value;  ///< of an optional argument: what the C++ interface puts in its place
};

enum class MemberKind { kOperation, kProperty, kEvent };

/// "operation", "property", "event".
BVCONN_EXPORT std::string_view kind_name(MemberKind kind);

namespace detail {

/// A parameter of the C++ interface that is an aggregate, spread over neighbouring arguments.
struct Aggregate {
  std::size_t first = 0;  ///< index of the argument that is its first field
  std::shared_ptr<void> (*make)() = nullptr;
  std::vector<void (*)(void* aggregate, const Value& value)> assign;
};

/// What a member runs. `slots` has one pointer for each parameter of the C++ interface: to a
/// `Value`, or to the aggregate.
struct Thunks {
  Value (*invoke)(void* object, const void* const* slots) = nullptr;
  Value (*get)(void* object) = nullptr;
  void (*set)(void* object, const Value& value) = nullptr;
  void (*connect)(void* object, std::function<void()> handler) = nullptr;
  std::optional<Aggregate> aggregate;
};

}  // namespace detail

/// One member of a class. `object` is always an object that the class's `make` has made, or any
/// other instance of exactly that class.
///
/// A call fails with the `Error` of the operation. A value of another type than the declared one,
/// or a required argument that is not there, fails with `Error` 13 before anything is called;
/// callers that want to say more check with `fits` first.
struct BVCONN_EXPORT Member {
  std::string name;
  MemberKind kind = MemberKind::kOperation;
  /// Result of an operation, type of a property; kNone for an event.
  ValueType result = ValueType::kNone;
  /// In interface order; the fields of an aggregate stand one by one. Properties may have some too:
  /// these are called with `invoke`, not read.
  std::vector<Argument> arguments;
  bool readable = false;  ///< properties only
  bool writable = false;  ///< properties only
  /// The value of a catalogue's row.
  std::optional<Variant> constant;

  /// Whether `invoke` serves this member: an operation, or a property with arguments.
  bool callable() const { return thunks.invoke != nullptr; }
  const Argument* find_argument(std::string_view argument_name) const;

  /// Calls the operation. Arguments go by place; those that are not there, at the end or as
  /// nothing, take their defaults.
  Value invoke(void* object, std::span<const Value> values) const;
  /// Reads a readable property without arguments.
  Value get(void* object) const;
  /// Writes a writable property.
  void set(void* object, const Value& value) const;
  /// Makes an event call the handler from now on.
  void connect(void* object, std::function<void()> handler) const;

  detail::Thunks thunks;
};

/// One public class.
struct BVCONN_EXPORT ClassInfo {
  std::string name;
  /// In slot order.
  std::vector<Member> members;
  /// A class whose instances all show the same: usable by its name, without creating an object.
  bool predeclared = false;
  std::shared_ptr<void> (*make)() = nullptr;

  /// The member with this name, mixed case and all; null when there is none.
  const Member* find(std::string_view member_name) const;
};

/// All public classes, in the order in which the interface lists them.
BVCONN_EXPORT const std::vector<const ClassInfo*>& classes();
/// The class with this name; null when there is none.
BVCONN_EXPORT const ClassInfo* find_class(std::string_view name);

}  // namespace bvconn::automation
