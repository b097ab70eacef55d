#include "bvconn/platform/platform_message_box.h"

namespace bvconn::detail {

std::shared_ptr<ModalMessage> make_message_box() {
  return make_stderr_message_box();
}

}  // namespace bvconn::detail
