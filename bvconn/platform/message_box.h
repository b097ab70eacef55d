#pragma once

#include <memory>
#include <string_view>

#include "bvconn/platform/export.h"

namespace bvconn {

// Windows has a macro of this name in its header, which a program may have included before.
#pragma push_macro("MessageBox")
#undef MessageBox

/// A modal message with a stop icon.
class BVCONN_EXPORT MessageBox {
 public:
  virtual ~MessageBox();
  virtual void show(std::string_view title, std::string_view text) = 0;
};

/// The same class, under a name that is free on every system.
using ModalMessage = MessageBox;

#pragma pop_macro("MessageBox")

/// Writes the message to standard error, for processes without a screen.
BVCONN_EXPORT std::shared_ptr<ModalMessage> make_stderr_message_box();

}  // namespace bvconn
