#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "bvconn/platform/soap/node_data.h"

namespace bvconn::detail {

/// Finds the shapes of a tree while it is read, so that nodes that look alike share one.
///
/// A node that gets a shape of its own where it could have shared one costs memory and nothing
/// else. So a document of names that never come again is not searched for in full: a shape lies in
/// one of a few places, and when all are taken, the new one takes over.
class Shapes {
 public:
  explicit Shapes(Tree& tree) : tree_(tree) {}
  Shapes(const Shapes&) = delete;
  Shapes& operator=(const Shapes&) = delete;

  /// A shape of the tree that is like this one.
  Shape* find(const Shape& wanted);

 private:
  struct Entry {
    Shape* shape = nullptr;
    std::uint64_t hash = 0;
  };
  static constexpr std::size_t kPlaces = 4;

  bool alike(const Shape& a, const Shape& b) const noexcept;
  bool alike(Slice a, Slice b) const noexcept;
  std::uint64_t hash_of(const Shape& shape) const noexcept;
  Entry& place_for(std::uint64_t hash);
  void grow();

  Tree& tree_;
  std::array<Entry, 64> few_{};
  std::vector<Entry> many_;  ///< instead of the few, once there are many
  Entry* entries_ = few_.data();
  std::size_t size_ = few_.size();
};

}  // namespace bvconn::detail
