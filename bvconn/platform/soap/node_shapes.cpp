#include "bvconn/platform/soap/node_shapes.h"

#include <cstring>
#include <new>
#include <utility>

namespace bvconn::detail {

namespace {

// What is longer is taken to be alike only where it is the very same part of the buffer: a type
// that an array claims for all its items is not compared in full for each of them.
constexpr std::size_t kComparedSize = 256;
constexpr std::size_t kMostEntries = 4096;

std::uint64_t mix(std::uint64_t hash, std::uint64_t value) noexcept {
  constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15;
  hash = (hash ^ value) * kOdd;
  return hash ^ (hash >> 32);
}

template <class Number>
std::uint64_t load(const char* at) noexcept {
  Number number = 0;
  std::memcpy(&number, at, sizeof number);
  return number;
}

/// Of a text its length, its beginning and its end.
std::uint64_t mix(std::uint64_t hash, std::string_view text) noexcept {
  const char* const at = text.data();
  const std::size_t size = text.size();
  hash = mix(hash, size);
  if (size >= 8) {
    return mix(mix(hash, load<std::uint64_t>(at)), load<std::uint64_t>(at + size - 8));
  }
  if (size >= 4) {
    return mix(hash, load<std::uint32_t>(at) | load<std::uint32_t>(at + size - 4) << 32);
  }
  if (size == 0) return hash;
  return mix(hash, load<std::uint8_t>(at) | load<std::uint8_t>(at + size / 2) << 8 |
                       load<std::uint8_t>(at + size - 1) << 16);
}

/// Where a hash looks on a turn, among `size` places, a power of two.
std::size_t place_of(std::uint64_t hash, std::size_t turn, std::size_t size) noexcept {
  return static_cast<std::size_t>(hash + turn) & (size - 1);
}

}  // namespace

bool Shapes::alike(Slice a, Slice b) const noexcept {
  if (a.size != b.size) return false;
  if (a.offset == b.offset || a.size == 0) return true;
  return a.size <= kComparedSize && view(tree_, a) == view(tree_, b);
}

bool Shapes::alike(const Shape& a, const Shape& b) const noexcept {
  return alike(a.name, b.name) && alike(a.type, b.type) && alike(a.name_space, b.name_space) &&
         alike(a.type_space, b.type_space);
}

std::uint64_t Shapes::hash_of(const Shape& shape) const noexcept {
  std::uint64_t hash = mix(shape.name_space.size, shape.type_space.size);
  hash = mix(hash, view(tree_, shape.name));
  return shape.type.size == 0 ? hash : mix(hash, view(tree_, shape.type));
}

Shape* Shapes::find(const Shape& wanted) {
  const std::uint64_t hash = hash_of(wanted);
  for (std::size_t i = 0; i < kPlaces; ++i) {
    const Entry& entry = entries_[place_of(hash, i, size_)];
    if (entry.shape == nullptr) break;
    if (entry.hash == hash && alike(*entry.shape, wanted)) return entry.shape;
  }
  auto* shape = ::new (tree_.blocks.take(sizeof(Shape))) Shape(wanted);
  shape->tree = &tree_;
  place_for(hash) = {shape, hash};
  return shape;
}

/// A free place, or the first one where all are taken.
Shapes::Entry& Shapes::place_for(std::uint64_t hash) {
  for (;;) {
    for (std::size_t i = 0; i < kPlaces; ++i) {
      Entry& entry = entries_[place_of(hash, i, size_)];
      if (entry.shape == nullptr) return entry;
    }
    if (size_ >= kMostEntries) return entries_[place_of(hash, 0, size_)];
    grow();
  }
}

void Shapes::grow() {
  std::vector<Entry> larger(4 * size_);
  for (std::size_t i = 0; i < size_; ++i) {
    if (entries_[i].shape == nullptr) continue;
    for (std::size_t j = 0; j < kPlaces; ++j) {
      Entry& entry = larger[place_of(entries_[i].hash, j, larger.size())];
      if (entry.shape != nullptr) continue;
      entry = entries_[i];
      break;
    }
  }
  many_ = std::move(larger);
  entries_ = many_.data();
  size_ = many_.size();
}

}  // namespace bvconn::detail
