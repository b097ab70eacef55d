#pragma once

#include "bvconn/catalogues/bv_methods.h"
#include "bvconn/catalogues/bv_services.h"

namespace bvconn {

/// The pair of catalogues that a few connector classes hold for themselves. All others use the
/// session's; both answer alike, since the catalogues are constant tables.
struct Catalogues {
  BVServices Services;
  BVMethods Methods;
};

}  // namespace bvconn
