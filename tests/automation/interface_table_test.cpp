#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <string>
#include <variant>
#include <vector>

#include "bvconn/automation/interface.h"

namespace bvconn::automation {
namespace {

/// The entries of the table, each joined to one line.
std::vector<std::string> table() {
  std::ifstream file(BVCONN_INTERFACE_TABLE);
  EXPECT_TRUE(file.is_open()) << "cannot read " << BVCONN_INTERFACE_TABLE;
  std::vector<std::string> entries;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line.front() == '#') continue;
    if (line.front() == ' ' && !entries.empty()) {
      entries.back() += line.substr(line.find_first_not_of(' ') - 1);
    } else {
      entries.push_back(line);
    }
  }
  return entries;
}

/// Whether a left-out argument of this type is what callers expect without looking it up.
bool is_usual(const Value& value, ValueType type) {
  switch (type) {
    case ValueType::kString:
      return std::get<Variant>(value) == Variant("");
    case ValueType::kBoolean:
      return std::get<Variant>(value) == Variant(false);
    case ValueType::kInt16:
      return std::get<Variant>(value) == Variant(std::int16_t{0});
    case ValueType::kInt32:
      return std::get<Variant>(value) == Variant(std::int32_t{0});
    case ValueType::kVariant:
      return std::get<Variant>(value).missing();
    case ValueType::kSoapNode:
      return !std::get<Variant>(value).node();
    default:
      return false;
  }
}

std::string in_words(const Argument& argument) {
  std::string text = argument.name + ": " + std::string(type_name(argument.type));
  if (!argument.optional) return text;
  text += "?";
  if (is_usual(argument.default_value, argument.type)) return text;
  return text + " = \"" + to_text(std::get<Variant>(argument.default_value)) + "\"";
}

std::string arguments_in_words(const Member& member) {
  if (!member.callable()) return "";
  std::string text;
  for (const Argument& argument : member.arguments) {
    text += (text.empty() ? "" : ", ") + in_words(argument);
  }
  return "(" + text + ")";
}

std::string result_in_words(const Member& member) {
  // Two of the services are addresses that each deployment sets for itself.
  if (member.constant && !member.constant->string().starts_with("http")) {
    return "\"" + member.constant->string() + "\"";
  }
  return std::string(type_name(member.result));
}

std::string in_words(const ClassInfo& info, const Member& member) {
  const std::string name = info.name + "." + member.name;
  if (member.kind == MemberKind::kEvent) return name + ", event";
  std::string text = name + arguments_in_words(member) + " -> " + result_in_words(member);
  if (member.kind == MemberKind::kProperty && !member.constant) {
    text += member.readable ? ", read" : "";
    text += member.writable ? ", written" : "";
  }
  return text;
}

// Hosts call members by the number of their slot, so two rows that change places are as wrong as
// one that is missing.
TEST(InterfaceTable, HoldsEveryMemberOfEveryClassInSlotOrder) {
  const std::vector<std::string> expected = table();
  std::vector<std::string> actual;
  for (const ClassInfo* info : classes()) {
    for (const Member& member : info->members) actual.push_back(in_words(*info, member));
  }
  for (std::size_t slot = 0; slot < std::min(expected.size(), actual.size()); ++slot) {
    ASSERT_EQ(actual[slot], expected[slot]) << "entry " << slot + 1 << " of the table";
  }
  EXPECT_EQ(actual.size(), expected.size());
}

}  // namespace
}  // namespace bvconn::automation
