#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <span>
#include <type_traits>

namespace bvconn::detail::xml {

/// A stack of plain data whose first items lie in the stack itself: what reads a small document
/// asks for no memory.
template <class Item, std::size_t kWithin>
class Stack {
  static_assert(std::is_trivially_copyable_v<Item> && std::is_trivially_destructible_v<Item>);

 public:
  Stack() noexcept : items_(reinterpret_cast<Item*>(within_)) {}
  Stack(const Stack&) = delete;
  Stack& operator=(const Stack&) = delete;
  ~Stack() {
    if (is_outside()) std::allocator<Item>().deallocate(items_, capacity_);
  }

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
  bool is_outside() const noexcept { return capacity_ != kWithin; }

  void grow() {
    Item* const larger = std::allocator<Item>().allocate(2 * capacity_);
    std::memcpy(static_cast<void*>(larger), items_, size_ * sizeof(Item));
    if (is_outside()) std::allocator<Item>().deallocate(items_, capacity_);
    items_ = larger;
    capacity_ *= 2;
  }

  Item* items_;
  std::size_t size_ = 0;
  std::size_t capacity_ = kWithin;
  alignas(Item) std::byte within_[kWithin * sizeof(Item)];
};

}  // namespace bvconn::detail::xml
