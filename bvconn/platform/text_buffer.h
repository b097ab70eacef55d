#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "bvconn/platform/thread_memory.h"

namespace bvconn::detail {

/// A text that grows as it arrives and may be long: the body of a reply. It ends with a NUL that
/// does not count. As long as it is not moved its bytes stay where they are, unless it grows.
class TextBuffer {
 public:
  TextBuffer() = default;
  // Not explicit: a string is a text.
  TextBuffer(std::string text) noexcept : string_(std::move(text)) {}
  TextBuffer(TextBuffer&& other) noexcept
      : string_(std::move(other.string_)),
        block_(std::move(other.block_)),
        size_(std::exchange(other.size_, 0)) {
    other.string_.clear();
  }
  TextBuffer& operator=(TextBuffer&& other) noexcept;
  ~TextBuffer() {
    if (in_block()) keep_block();
  }

  const char* data() const noexcept { return in_block() ? text() : string_.data(); }
  char* data() noexcept { return in_block() ? text() : string_.data(); }
  std::size_t size() const noexcept { return in_block() ? size_ : string_.size(); }
  std::string_view view() const noexcept { return {data(), size()}; }
  /// How long it can become where it is.
  std::size_t capacity() const noexcept { return in_block() ? block_.size() - 1 : string_.size(); }

  /// Makes room for so many bytes in all. Throws `std::bad_alloc`; then nothing has changed.
  void reserve(std::size_t bytes);
  /// Appends what there is room for.
  void append(std::string_view more) noexcept;
  /// The text as a string, which leaves this one empty.
  std::string take_string();

 private:
  bool in_block() const noexcept { return block_.data() != nullptr; }
  void keep_block() noexcept;
  char* text() const noexcept { return reinterpret_cast<char*>(block_.data()); }

  std::string string_;  ///< where there is no block
  MemoryBlock block_;
  std::size_t size_ = 0;
};

}  // namespace bvconn::detail
