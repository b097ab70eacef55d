#include <mutex>

#include "sandbox/endpoints/endpoints.h"

namespace bvconn::sandbox {

Reply answer_admin(Sandbox& sandbox, const Request& request) {
  if (request.path() != "/admin/disabled") {
    return text_reply(404, "There is nothing to administer here but /admin/disabled.\n");
  }
  const std::lock_guard lock(sandbox.mutex);
  if (request.method == "POST") {
    sandbox.disabled_services = request.body;
  } else if (request.method != "GET") {
    return method_not_allowed(request, "GET, POST");
  }
  return text_reply(200, sandbox.disabled_services);
}

}  // namespace bvconn::sandbox
