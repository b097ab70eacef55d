#pragma once

#include "bvconn/platform/text_buffer.h"

namespace bvconn::detail {

/// What the library's own transport offers beside `Receive`: the body as it was taken in, which
/// saves a copy of it as a string.
class BufferedReply {
 public:
  /// As `Receive`.
  virtual TextBuffer receive_buffer() = 0;

 protected:
  ~BufferedReply() = default;
};

}  // namespace bvconn::detail
