#include "service_objects.h"

namespace bvconn::test {

std::shared_ptr<ServiceObject> reached(std::shared_ptr<ServiceObject> object) {
  return object;
}

}  // namespace bvconn::test
