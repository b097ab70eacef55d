#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "sandbox/store/store.h"

namespace bvconn::sandbox {

/// A store that nobody else uses as long as this object lives.
class HeldStore {
 public:
  HeldStore(std::mutex& mutex, Store& store) : lock_(mutex), store_(&store) {}
  Store& operator*() const { return *store_; }
  Store* operator->() const { return store_; }

 private:
  std::unique_lock<std::mutex> lock_;
  Store* store_;
};

/// The store as several threads of a process use it. What changes something and
/// what looks something up have a connection each, so who looks something up
/// waits for no writer, however long that one waits for other processes or for
/// the disk. A database in memory has one connection alone.
class Stores {
 public:
  /// As `Store` takes them.
  Stores(const std::string& where, std::optional<std::uint64_t> seed) : changing_(where, seed) {
    if (where != ":memory:") reading_.emplace(where, seed);
  }

  /// `Turn::kNone` is for what looks something up.
  HeldStore hold(Turn turn) {
    Guarded& one = turn == Turn::kNone && reading_ ? *reading_ : changing_;
    return {one.mutex, one.store};
  }

 private:
  struct Guarded {
    Guarded(const std::string& where, std::optional<std::uint64_t> seed) : store(where, seed) {}

    std::mutex mutex;
    Store store;
  };

  Guarded changing_;
  std::optional<Guarded> reading_;
};

}  // namespace bvconn::sandbox
