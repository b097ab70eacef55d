#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "bvconn/automation/interface.h"
#include "bvconn/component/abi.h"

namespace bvconn::component {

/// One member of an object that is called by name.
struct NamedMember {
  DispatchId id = kUnknownId;
  std::string name;
  /// The ways in which it may be called: bits of `call_flag`.
  std::uint16_t access = 0;
  /// Without the value that a property is set to.
  std::vector<automation::Argument> arguments;
  /// Type of the value that a property is set to.
  automation::ValueType put_type = automation::ValueType::kNone;
};

/// The members of a class, found by name (without regard to case) or by number.
class MemberTable {
 public:
  explicit MemberTable(std::vector<NamedMember> members);

  const NamedMember* find(std::string_view name) const;
  const NamedMember* find(DispatchId id) const;

 private:
  std::vector<NamedMember> members_;
  std::unordered_map<std::string, std::size_t> by_name_;
  std::unordered_map<DispatchId, std::size_t> by_id_;
};

/// The members of a class of the interface. A member's number is its place among the slots,
/// counted from 1; events take up a place and are not callable.
MemberTable member_table(const automation::ClassInfo& info);

/// `IDispatch::GetIDsOfNames` over a table: the first name is a member's, the others are those of
/// its arguments, whose numbers are their places.
Hresult ids_of_names(const MemberTable& table, const Guid* reserved, char16_t** names,
                     std::uint32_t count, DispatchId* ids) noexcept;

}  // namespace bvconn::component
