#include "nearest_names.h"

namespace bvconn::tool {
namespace {

template <class Members>
std::vector<std::string> names_of(const Members& members) {
  std::vector<std::string> names;
  for (const auto& each : members) names.push_back(each.name);
  return names;
}

}  // namespace

std::vector<std::string> class_names() {
  std::vector<std::string> names;
  for (const automation::ClassInfo* info : automation::classes()) names.push_back(info->name);
  return names;
}

std::vector<std::string> member_names(const automation::ClassInfo& info) {
  return names_of(info.members);
}

std::vector<std::string> argument_names(const automation::Member& member) {
  return names_of(member.arguments);
}

}  // namespace bvconn::tool
