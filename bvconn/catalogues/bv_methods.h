#pragma once

#include <string>

#include "bvconn/platform/export.h"

namespace bvconn {

/// The server's method names: 227 constant rows, each a property that gives the wire name. All
/// instances are equal.
class BVCONN_EXPORT BVMethods {
 public:
#define BVCONN_METHOD(property, wire_name) std::string property() const;
#include "bvconn/catalogues/bv_methods_rows.inc"
#undef BVCONN_METHOD
};

}  // namespace bvconn
