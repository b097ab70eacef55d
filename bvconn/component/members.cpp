#include "bvconn/component/members.h"

#include <algorithm>
#include <optional>

#include "bvconn/component/counted.h"
#include "bvconn/component/text.h"
#include "bvconn/platform/conversions/conversions.h"

namespace bvconn::component {
namespace {

std::uint16_t access_of(const automation::Member& member) {
  if (member.kind == automation::MemberKind::kEvent) return 0;
  // A property with arguments reads like a call in most languages, and hosts differ in how they ask
  // for it.
  if (member.callable()) {
    constexpr std::uint16_t kEither = call_flag::kMethod | call_flag::kPropertyGet;
    return member.kind == automation::MemberKind::kOperation ? call_flag::kMethod : kEither;
  }
  unsigned access = 0;
  if (member.readable) access |= call_flag::kPropertyGet;
  if (member.writable) access |= call_flag::kPropertyPut;
  return static_cast<std::uint16_t>(access);
}

// Names come ended by a zero, without a length before them.
std::optional<std::string> name_of(const char16_t* name) {
  if (name == nullptr) return std::nullopt;
  return utf8_from_utf16(std::u16string_view(name));
}

DispatchId argument_id(const NamedMember& member, std::string_view name) {
  const auto found = std::ranges::find_if(member.arguments, [&](const auto& argument) {
    return conversions::equal_ignoring_case(argument.name, name);
  });
  if (found == member.arguments.end()) return kUnknownId;
  return static_cast<DispatchId>(found - member.arguments.begin());
}

}  // namespace

MemberTable::MemberTable(std::vector<NamedMember> members) : members_(std::move(members)) {
  for (std::size_t i = 0; i < members_.size(); ++i) {
    by_name_.emplace(conversions::upper_case(members_[i].name), i);
    by_id_.emplace(members_[i].id, i);
  }
}

const NamedMember* MemberTable::find(std::string_view name) const {
  const auto found = by_name_.find(conversions::upper_case(name));
  return found == by_name_.end() ? nullptr : &members_[found->second];
}

const NamedMember* MemberTable::find(DispatchId id) const {
  const auto found = by_id_.find(id);
  return found == by_id_.end() ? nullptr : &members_[found->second];
}

MemberTable member_table(const automation::ClassInfo& info) {
  std::vector<NamedMember> members;
  for (std::size_t slot = 0; slot < info.members.size(); ++slot) {
    const automation::Member& member = info.members[slot];
    if (member.kind == automation::MemberKind::kEvent) continue;
    members.push_back({.id = static_cast<DispatchId>(slot + 1),
                       .name = member.name,
                       .access = access_of(member),
                       .arguments = member.arguments,
                       .put_type = member.result});
  }
  return MemberTable(std::move(members));
}

Hresult ids_of_names(const MemberTable& table, const Guid* reserved, char16_t** names,
                     std::uint32_t count, DispatchId* ids) noexcept {
  if (names == nullptr || ids == nullptr) return kNullPointer;
  if (reserved != nullptr && !(*reserved == kNullGuid)) return kUnknownInterface;
  if (count == 0) return kInvalidArgument;
  std::fill_n(ids, count, kUnknownId);
  return guarded([&] {
    const auto name = name_of(names[0]);
    const NamedMember* member = name ? table.find(*name) : nullptr;
    if (member == nullptr) return kUnknownName;
    ids[0] = member->id;
    Hresult result = kOk;
    for (std::uint32_t i = 1; i < count; ++i) {
      const auto argument = name_of(names[i]);
      if (argument) ids[i] = argument_id(*member, *argument);
      if (ids[i] == kUnknownId) result = kUnknownName;
    }
    return result;
  });
}

}  // namespace bvconn::component
