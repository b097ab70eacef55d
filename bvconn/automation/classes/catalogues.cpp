#include "bvconn/automation/class_builder.h"
#include "bvconn/automation/classes/declared_classes.h"
#include "bvconn/catalogues/bv_methods.h"
#include "bvconn/catalogues/bv_services.h"

namespace bvconn::automation {

const ClassInfo& services_class() {
  static const ClassInfo info = [] {
    ClassBuilder<BVServices> rows("BVServices");
    rows.predeclared();
#define BVCONN_SERVICE(property, value) rows.constant(#property, &BVServices::property);
#include "bvconn/catalogues/bv_services_rows.inc"
#undef BVCONN_SERVICE
    return rows.take();
  }();
  return info;
}

const ClassInfo& methods_class() {
  static const ClassInfo info = [] {
    ClassBuilder<BVMethods> rows("BVMethods");
    rows.predeclared();
#define BVCONN_METHOD(property, wire_name) rows.constant(#property, &BVMethods::property);
#include "bvconn/catalogues/bv_methods_rows.inc"
#undef BVCONN_METHOD
    return rows.take();
  }();
  return info;
}

}  // namespace bvconn::automation
