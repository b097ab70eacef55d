#include "bvconn/catalogues/bv_services.h"

namespace bvconn {

#define BVCONN_SERVICE(property, value)      \
  std::string BVServices::property() const { \
    return value;                            \
  }
#include "bvconn/catalogues/bv_services_rows.inc"
#undef BVCONN_SERVICE

}  // namespace bvconn
