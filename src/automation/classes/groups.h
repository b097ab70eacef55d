#pragma once

#include "bvconn/automation/interface.h"

/// The declared classes, one function each; classes.cpp joins them into the interface.
namespace bvconn::automation {

// catalogues.cpp
const ClassInfo& services_class();
const ClassInfo& methods_class();

}  // namespace bvconn::automation
