#include "line_output.h"

namespace bvconn::tool {

void WholeLines::end(std::string_view text) {
  if (begun_.empty()) return taker_(text);
  begun_.append(text);
  taker_(std::exchange(begun_, {}));
}

void JsonLine::clear() {
  has_left_ = false;
  set_window(buffer_.data(), buffer_.data() + buffer_.size());
}

void JsonLine::make_room() {
  has_left_ = true;
  out_.part(written());
  set_window(buffer_.data(), buffer_.data() + buffer_.size());
}

void JsonLine::end_line() {
  out_.end(written());
  clear();
}

}  // namespace bvconn::tool
