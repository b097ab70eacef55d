#pragma once

#include <string>

#include "bvconn/platform/export.h"

namespace bvconn {

/// The server's services: 20 constant rows, each a property that gives the service's URN. All
/// instances are equal.
class BVCONN_EXPORT BVServices {
 public:
#define BVCONN_SERVICE(property, value) std::string property() const;
#include "bvconn/catalogues/bv_services_rows.inc"
#undef BVCONN_SERVICE
};

}  // namespace bvconn
