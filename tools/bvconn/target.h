#pragma once

#include <string>
#include <string_view>

#include "bvconn/automation/interface.h"

namespace bvconn::tool {

/// A member that is called.
struct Target {
  const automation::ClassInfo* info = nullptr;
  const automation::Member* member = nullptr;

  std::string path() const { return info->name + "." + member->name; }
};

/// The class with this name. @throws UsageError, with the names that are near.
const automation::ClassInfo& find_class(std::string_view name);
/// The member of CLASS.OPERATION. @throws UsageError  also for one that cannot be called.
Target find_target(std::string_view path);

}  // namespace bvconn::tool
