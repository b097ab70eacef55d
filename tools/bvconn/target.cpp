#include "target.h"

#include "arguments.h"
#include "nearest_names.h"

namespace bvconn::tool {

const automation::ClassInfo& find_class(std::string_view name) {
  const automation::ClassInfo* info = automation::find_class(name);
  if (info != nullptr) return *info;
  throw UsageError("there is no class " + std::string(name) + did_you_mean(name, class_names()));
}

Target find_target(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  if (dot == std::string_view::npos) throw UsageError("CLASS.OPERATION is expected");
  Target target{.info = &find_class(path.substr(0, dot))};
  const std::string_view name = path.substr(dot + 1);
  target.member = target.info->find(name);
  if (target.member == nullptr) {
    throw UsageError(target.info->name + " has no such member" +
                     did_you_mean(name, member_names(*target.info)));
  }
  if (!target.member->callable()) {
    throw UsageError("not an operation; a batch reads and writes properties");
  }
  return target;
}

}  // namespace bvconn::tool
