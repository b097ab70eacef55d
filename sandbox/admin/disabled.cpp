#include "sandbox/admin/admin.h"
#include "sandbox/options.h"

namespace bvconn::sandbox {

Reply get_disabled(AdminCall& call) {
  return text_reply(200, call.sandbox.stores.hold(Turn::kNone)->disabled_services());
}

Reply set_disabled(AdminCall& call) {
  if (const std::string trouble = trouble_with_disabled(call.request.body); !trouble.empty()) {
    throw AdminRefusal{400, trouble};
  }
  call.sandbox.stores.hold(Turn::kStore)->set_disabled_services(call.request.body);
  return text_reply(200, call.request.body);
}

}  // namespace bvconn::sandbox
