#include "bvconn/automation/classes/groups.h"

namespace bvconn::automation {

const std::vector<const ClassInfo*>& classes() {
  static const std::vector<const ClassInfo*> all{
      &connector_object_class(),     //
      &generic_connector_class(),    //
      &services_class(),             //
      &methods_class(),              //
      &invoice_connector_class(),    //
      &heart_beat_connector_class()  //
  };
  return all;
}

}  // namespace bvconn::automation
