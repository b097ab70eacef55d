#pragma once

#include <memory>

#include "bvconn/platform/message_box.h"

namespace bvconn::detail {

/// How this system shows a modal message.
std::shared_ptr<ModalMessage> make_message_box();

}  // namespace bvconn::detail
