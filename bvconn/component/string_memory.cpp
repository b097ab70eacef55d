#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "bvconn/component/text.h"

namespace bvconn::component {
namespace {

// The length stands in the last four bytes of the prefix; eight keep the text as aligned as the
// memory that it lies in.
constexpr std::size_t kPrefixBytes = 8;

}  // namespace

StringPointer alloc_string(const char16_t* text, std::size_t length) noexcept {
  constexpr std::size_t kMaxLength =
      (std::numeric_limits<std::uint32_t>::max() - kPrefixBytes) / sizeof(char16_t) - 1;
  if (length > kMaxLength) return nullptr;
  const std::size_t bytes = length * sizeof(char16_t);
  auto* block = static_cast<std::byte*>(std::calloc(1, kPrefixBytes + bytes + sizeof(char16_t)));
  if (block == nullptr) return nullptr;
  const auto prefix = static_cast<std::uint32_t>(bytes);
  std::memcpy(block + kPrefixBytes - sizeof prefix, &prefix, sizeof prefix);
  if (text != nullptr && bytes != 0) std::memcpy(block + kPrefixBytes, text, bytes);
  return reinterpret_cast<StringPointer>(block + kPrefixBytes);
}

void free_string(StringPointer text) noexcept {
  if (text != nullptr) std::free(reinterpret_cast<std::byte*>(text) - kPrefixBytes);
}

std::uint32_t string_bytes(const char16_t* text) noexcept {
  std::uint32_t bytes = 0;
  if (text == nullptr) return bytes;
  std::memcpy(&bytes, reinterpret_cast<const std::byte*>(text) - sizeof bytes, sizeof bytes);
  return bytes;
}

std::uint32_t string_length(const char16_t* text) noexcept {
  return string_bytes(text) / static_cast<std::uint32_t>(sizeof(char16_t));
}

}  // namespace bvconn::component
