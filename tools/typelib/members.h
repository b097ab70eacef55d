#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "bvconn/component/class_table.h"

/// What a type library says of the members of an object, in the words of the interface definition
/// language.
namespace bvconn::typelib {

struct TypedArgument {
  std::string name{};
  std::string type{};
  bool optional = false;
  /// As it is written there; "" for none, which a variant that is left out needs not.
  std::string default_value{};
};

enum class Access { kMethod, kGet, kPut, kPutReference };

/// One way to call a member: a property that is read and written is two of them.
struct TypedMember {
  std::int32_t id = 0;
  Access access = Access::kMethod;
  std::string name{};
  std::string result = "void";
  std::vector<TypedArgument> arguments{};
  std::string help{};
  /// Not for people, but for what their language makes of a loop.
  bool hidden = false;
};

struct TypedInterface {
  /// Of the object that has these members.
  std::string name;
  component::Guid id;
  std::vector<TypedMember> members;
};

/// The name of the interface of an object's members: hosts show the object's own name for it.
std::string interface_name(std::string_view object);

/// The members of every class, helper and result, in the order of the class table.
std::vector<TypedInterface> all_interfaces();

/// Of the objects that are none of the public classes.
std::vector<TypedInterface> outside_interfaces();

}  // namespace bvconn::typelib
