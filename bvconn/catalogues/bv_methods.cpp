#include "bvconn/catalogues/bv_methods.h"

namespace bvconn {

#define BVCONN_METHOD(property, wire_name)  \
  std::string BVMethods::property() const { \
    return wire_name;                       \
  }
#include "bvconn/catalogues/bv_methods_rows.inc"
#undef BVCONN_METHOD

}  // namespace bvconn
