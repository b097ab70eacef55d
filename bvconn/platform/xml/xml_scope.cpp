#include "bvconn/platform/xml/xml_scope.h"

#include <algorithm>
#include <functional>

#include "bvconn/platform/xml/xml_scan.h"

namespace bvconn::detail::xml {
namespace {

std::uint64_t word_of(std::string_view prefix) {
  return xml::word_of(prefix.data(), prefix.size());
}

// From this size on equal namespaces are made one slice. Otherwise two very long ones, declared
// once and compared for each element, would make reading quadratic.
constexpr std::size_t kLongUri = 256;

}  // namespace

int compare_uris(std::string_view a, std::string_view b) noexcept {
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  if (a.data() == b.data()) return 0;
  if (a.size() < kLongUri) return same_bytes(a.data(), b.data(), a.size()) ? 0 : a.compare(b);
  return std::less<>()(a.data(), b.data()) ? -1 : 1;
}

Scope::Scope() {
  slots_.push({word_of(""), "", ""});
  slots_.push({word_of("xml"), "xml", kXmlUri});
}

std::size_t Scope::find(std::string_view prefix, std::uint64_t word) const noexcept {
  // From the innermost ones outwards: most names are in their namespaces.
  for (std::size_t i = std::min(slots_.size(), kSearchedInTurn); i-- > 0;) {
    const Slot& slot = slots_[i];
    if (slot.word == word && slot.prefix.size() == prefix.size() &&
        (prefix.size() <= sizeof word || same_text(slot.prefix, prefix))) {
      return i;
    }
  }
  if (slots_.size() > kSearchedInTurn) {
    const auto other = others_.find(prefix);
    if (other != others_.end()) return other->second;
  }
  return kNoSlot;
}

std::optional<std::string_view> Scope::lookup(std::string_view prefix) const noexcept {
  const std::size_t slot = find(prefix, word_of(prefix));
  if (slot == kNoSlot) return std::nullopt;
  return slots_[slot].uri;
}

void Scope::declare(std::string_view prefix, std::string_view uri) {
  if (uri.size() >= kLongUri) uri = *long_uris_.insert(uri).first;
  const std::uint64_t word = word_of(prefix);
  std::size_t slot = find(prefix, word);
  const bool is_new = slot == kNoSlot;
  if (is_new) {
    slot = slots_.size();
    slots_.push({word, prefix, uri});
    if (slot >= kSearchedInTurn) others_.emplace(prefix, slot);
  }
  declarations_.push({slot, is_new, state_, slots_[slot].uri});
  state_ = ++last_state_;
  slots_[slot].uri = uri;
}

void Scope::forget(std::size_t mark) noexcept {
  while (declarations_.size() > mark) {
    const Declaration last = declarations_.back();
    state_ = last.state_before;
    if (last.made_slot) {
      if (last.slot >= kSearchedInTurn) others_.erase(slots_[last.slot].prefix);
      slots_.pop();
    } else {
      slots_[last.slot].uri = last.hidden_uri;
    }
    declarations_.pop();
  }
}

}  // namespace bvconn::detail::xml
