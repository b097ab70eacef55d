#include "bvconn/platform/text_buffer.h"

#include <cstring>
#include <utility>

namespace bvconn::detail {

TextBuffer& TextBuffer::operator=(TextBuffer&& other) noexcept {
  string_.swap(other.string_);
  std::swap(block_, other.block_);
  std::swap(size_, other.size_);
  return *this;
}

void TextBuffer::keep_block() noexcept {
  keep_spare(Spare::kText, std::move(block_));
}

void TextBuffer::reserve(std::size_t bytes) {
  if (bytes <= capacity() && in_block()) return;
  MemoryBlock larger = spare_or_new(Spare::kText, bytes + 1);
  const std::size_t size = this->size();
  std::memcpy(larger.data(), data(), size + 1);
  keep_spare(Spare::kText, std::exchange(block_, std::move(larger)));
  size_ = size;
  string_ = std::string();
}

void TextBuffer::append(std::string_view more) noexcept {
  if (more.empty()) return;
  std::memcpy(text() + size_, more.data(), more.size());
  size_ += more.size();
  text()[size_] = '\0';
}

std::string TextBuffer::take_string() {
  std::string result = in_block() ? std::string(view()) : std::move(string_);
  *this = TextBuffer();
  return result;
}

}  // namespace bvconn::detail
