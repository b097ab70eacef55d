#include <algorithm>
#include <limits>

#include "bvconn/component/text.h"
#include "bvconn/platform/windows/components.h"

// Texts are the system's, since a host frees those that it is given, and the system those in
// variants.
namespace bvconn::component {
namespace {

const OLECHAR* systems(const char16_t* text) {
  return reinterpret_cast<const OLECHAR*>(text);
}

BSTR owned(const char16_t* text) {
  return reinterpret_cast<BSTR>(const_cast<char16_t*>(text));
}

}  // namespace

StringPointer alloc_string(const char16_t* text, std::size_t length) noexcept {
  // The length in bytes has 32 bits.
  constexpr std::size_t kMaxLength = std::numeric_limits<std::uint32_t>::max() / 2 - 8;
  if (length > kMaxLength) return nullptr;
  auto* made = reinterpret_cast<StringPointer>(
      ::SysAllocStringLen(systems(text), static_cast<UINT>(length)));
  // Without a text to copy, what the system allocated is as it was found.
  if (made != nullptr && text == nullptr) std::fill_n(made, length, char16_t{0});
  return made;
}

void free_string(StringPointer text) noexcept {
  ::SysFreeString(owned(text));
}

std::uint32_t string_bytes(const char16_t* text) noexcept {
  return ::SysStringByteLen(owned(text));
}

std::uint32_t string_length(const char16_t* text) noexcept {
  return ::SysStringLen(owned(text));
}

}  // namespace bvconn::component
