#pragma once

#include <memory>
#include <string_view>

#include "bvconn/platform/export.h"

namespace bvconn {

/// A modal message with a stop icon.
class BVCONN_EXPORT MessageBox {
 public:
  virtual ~MessageBox();
  virtual void show(std::string_view title, std::string_view text) = 0;
};

/// Writes the message to standard error: the library has no screen of its own.
BVCONN_EXPORT std::shared_ptr<MessageBox> make_stderr_message_box();

}  // namespace bvconn
