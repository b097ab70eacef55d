#pragma once

#include <string>
#include <vector>

#include "bvconn/automation/interface.h"
#include "bvconn/platform/conversions/nearest_names.h"

namespace bvconn::tool {

using bvconn::did_you_mean;
using bvconn::nearest_names;

std::vector<std::string> class_names();
std::vector<std::string> member_names(const automation::ClassInfo& info);
std::vector<std::string> argument_names(const automation::Member& member);

}  // namespace bvconn::tool
