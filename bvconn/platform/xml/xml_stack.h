#pragma once

#include <cstddef>
#include <cstring>
#include <new>
#include <span>
#include <type_traits>
#include <utility>

#include "bvconn/platform/thread_memory.h"

namespace bvconn::detail::xml {

/// A stack of plain data whose first items lie in the stack itself: what reads a small document
/// asks for no memory, and what a large one takes goes back to the system.
template <class Item, std::size_t kWithin>
class Stack {
  static_assert(std::is_trivially_copyable_v<Item> && std::is_trivially_destructible_v<Item>);
  static_assert(alignof(Item) <= alignof(std::max_align_t));

 public:
  Stack() noexcept : items_(reinterpret_cast<Item*>(within_)) {}
  Stack(const Stack&) = delete;
  Stack& operator=(const Stack&) = delete;
  ~Stack() = default;

  std::size_t size() const noexcept { return size_; }
  bool empty() const noexcept { return size_ == 0; }
  Item* begin() noexcept { return items_; }
  Item* end() noexcept { return items_ + size_; }
  const Item* begin() const noexcept { return items_; }
  const Item* end() const noexcept { return items_ + size_; }
  Item& operator[](std::size_t i) noexcept { return items_[i]; }
  const Item& operator[](std::size_t i) const noexcept { return items_[i]; }
  Item& front() noexcept { return items_[0]; }
  const Item& front() const noexcept { return items_[0]; }
  Item& back() noexcept { return items_[size_ - 1]; }
  const Item& back() const noexcept { return items_[size_ - 1]; }
  std::span<const Item> items() const noexcept { return {items_, size_}; }

  /// A reference to an item holds until the next one is pushed.
  Item& push(const Item& item) {
    if (size_ == capacity_) grow();
    return *::new (items_ + size_++) Item(item);
  }
  Item& push() {
    if (size_ == capacity_) grow();
    return *::new (items_ + size_++) Item();
  }
  void pop() noexcept { --size_; }
  void shrink(std::size_t size) noexcept { size_ = size; }
  void clear() noexcept { size_ = 0; }

 private:
  // Fourfold: few steps are then taken in the allocator's memory, and the system's costs nothing
  // before it is written to.
  void grow() {
    const bool is_within = outside_.data() == nullptr;
    outside_.grow(4 * capacity_ * sizeof(Item), is_within ? 0 : size_ * sizeof(Item));
    if (is_within) std::memcpy(outside_.data(), within_, size_ * sizeof(Item));
    items_ = reinterpret_cast<Item*>(outside_.data());
    capacity_ = outside_.size() / sizeof(Item);
  }

  Item* items_;
  std::size_t size_ = 0;
  std::size_t capacity_ = kWithin;
  MemoryBlock outside_;
  alignas(Item) std::byte within_[kWithin * sizeof(Item)];
};

}  // namespace bvconn::detail::xml
