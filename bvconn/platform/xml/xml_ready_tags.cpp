#include "bvconn/platform/xml/xml_ready_tags.h"

#include <algorithm>
#include <cstring>

namespace bvconn::detail::xml {

// Who makes tags that all have the same place gains nothing: of these few are found, and no more
// are looked at.
std::size_t ReadyTags::place_of(const char* tag, std::size_t size) {
  constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;
  std::uint64_t hash = size;
  const auto add = [&hash, tag](std::size_t at, std::size_t count) {
    std::uint64_t word = 0;
    std::memcpy(&word, tag + at, count);
    hash = (hash ^ word) * kFactor;
    hash ^= hash >> 32;
  };
  if (size < sizeof hash) {
    add(0, size);
  } else {
    for (std::size_t at = 0; size - at > sizeof hash; at += sizeof hash) add(at, sizeof hash);
    add(size - sizeof hash, sizeof hash);
  }
  return hash % kPlaces;
}

const ReadyTag* ReadyTags::look_up(const char* at, const char* end, std::uint32_t scope) {
  if (--patience_ < 0) {
    patience_ = kPatienceAfterRest;
    resting_ = kRest;
    return nullptr;
  }
  const auto most = std::min(static_cast<std::size_t>(end - at), kLongestTag);
  const auto* const mark = static_cast<const char*>(std::memchr(at, '>', most));
  if (mark == nullptr) return nullptr;
  const auto size = static_cast<std::size_t>(mark + 1 - at);
  const std::size_t place = place_of(at, size);
  for (std::size_t i = 0; i < kProbes; ++i) {
    const std::size_t number = places_[(place + i) % kPlaces];
    if (number == 0) break;
    ReadyTag& tag = tags_[number - 1];
    if (tag.size == size && stands_at(tag, at, end, scope)) {
      patience_ += 2;
      follow(tag);
      return &tag;
    }
  }
  return nullptr;
}

void ReadyTags::follow(ReadyTag& tag) {
  if (last_ != nullptr) last_->next = &tag;
  last_ = &tag;
}

void ReadyTags::forget_all() {
  tags_.clear();
  tags_.reserve(kMostTags);
  attributes_.clear();
  places_.fill(0);
  last_ = nullptr;
}

std::uint32_t ReadyTags::add(const ReadyTag& tag, std::span<const Attribute> attributes) {
  if (tag.size > kLongestTag) return Tag::kNoNumber;
  const bool is_full =
      tags_.size() == kMostTags || attributes_.size() + attributes.size() > kMostAttributes;
  if (tags_.empty() || is_full) forget_all();
  ReadyTag& added = tags_.emplace_back(tag);
  added.number = static_cast<std::uint32_t>(tags_.size() - 1);
  added.first_attribute = static_cast<std::uint32_t>(attributes_.size());
  added.attribute_count = static_cast<std::uint32_t>(attributes.size());
  for (const Attribute& attribute : attributes) attributes_.push_back(attribute);
  const std::size_t place = place_of(added.begin, added.size);
  std::size_t i = 0;
  while (i < kProbes && places_[(place + i) % kPlaces] != 0) ++i;
  places_[(place + i % kProbes) % kPlaces] = static_cast<std::uint16_t>(tags_.size());
  follow(added);
  return added.number;
}

}  // namespace bvconn::detail::xml
