#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "bvconn/platform/torvexlib/service_object.h"

/// The operations of the data access layer's service objects that the connectors call: one class
/// for each object, with a function for each operation, typed, with its arguments in the object's
/// order. Every operation gives the text of a whole SOAP response (`SetServerUrl`, which has no
/// result, gives ""). Where no object was made (`InitTorvexDAL` was not called) it fails with 91.
namespace bvconn::dal {

namespace detail {

/// Turns the arguments of a call into values of an operation's declared types. In braces, so that
/// nothing narrows: no text becomes a boolean.
template <class Declaration>
struct DeclaredOperation;

template <class... Declared>
struct DeclaredOperation<void(Declared...)> {
  static constexpr std::size_t kArity = sizeof...(Declared);

  template <class... Given>
  static std::array<Variant, kArity> values(const Given&... given) {
    return {Variant(std::remove_cvref_t<Declared>{given})...};
  }
};

}  // namespace detail

/// Calls one service object.
class ServiceCaller {
 public:
  explicit ServiceCaller(std::shared_ptr<ServiceObject> object) : object_(std::move(object)) {}

 protected:
  /// Whether the object's operation is looked up at run time, with every argument by reference.
  enum class LookUp { kEarly, kByName };

  template <class Declaration, class... Arguments>
  std::string call(std::string_view operation, LookUp look_up, const Arguments&... given) const {
    using Operation = detail::DeclaredOperation<Declaration>;
    static_assert(sizeof...(Arguments) == Operation::kArity,
                  "an operation of a service object takes exactly the arguments of its row");
    return invoke(operation, Operation::values(given...), look_up == LookUp::kByName);
  }

 private:
  std::string invoke(std::string_view operation, std::span<const Variant> arguments,
                     bool by_name) const;

  std::shared_ptr<ServiceObject> object_;
};

#define BVCONN_SERVICE_OBJECT(name, ...) \
  class name : public ServiceCaller {    \
   public:                               \
    using ServiceCaller::ServiceCaller;  \
    __VA_ARGS__                          \
  };
#define BVCONN_SERVICE_OPERATION(name, ...)                              \
  std::string name(const auto&... arguments) const {                     \
    return call<void(__VA_ARGS__)>(#name, LookUp::kEarly, arguments...); \
  }
#define BVCONN_SERVICE_OPERATION_BY_NAME(name, ...)                       \
  std::string name(const auto&... arguments) const {                      \
    return call<void(__VA_ARGS__)>(#name, LookUp::kByName, arguments...); \
  }
#include "bvconn/platform/torvexlib/service_object_rows.inc"

}  // namespace bvconn::dal
