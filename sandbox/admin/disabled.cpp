#include <mutex>

#include "sandbox/admin/admin.h"
#include "sandbox/options.h"

namespace bvconn::sandbox {

Reply get_disabled(AdminCall& call) {
  const std::lock_guard lock(call.sandbox.mutex);
  return text_reply(200, call.sandbox.store.disabled_services());
}

Reply set_disabled(AdminCall& call) {
  if (const std::string trouble = trouble_with_disabled(call.request.body); !trouble.empty()) {
    throw AdminRefusal{400, trouble};
  }
  const std::lock_guard lock(call.sandbox.mutex);
  call.sandbox.store.set_disabled_services(call.request.body);
  return text_reply(200, call.request.body);
}

}  // namespace bvconn::sandbox
