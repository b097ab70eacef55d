#include "bvconn/automation/classes/groups.h"

namespace bvconn::automation {

const std::vector<const ClassInfo*>& classes() {
  static const std::vector<const ClassInfo*> all{
      &services_class(),
      &methods_class(),
  };
  return all;
}

}  // namespace bvconn::automation
