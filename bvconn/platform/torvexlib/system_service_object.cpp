#include "bvconn/platform/torvexlib/system_service_object.h"

namespace bvconn::detail {

std::shared_ptr<ServiceObject> make_service_object(std::string_view name) {
  return make_http_service_object(name);
}

}  // namespace bvconn::detail
