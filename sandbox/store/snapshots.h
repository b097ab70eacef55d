#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/store/database.h"

namespace bvconn::sandbox {

struct Snapshot {
  std::string name;
  std::string made;  ///< "2026-01-31T17:05:09", of UTC
};

/// Why a snapshot cannot be made or restored.
class SnapshotError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What the store is about, as it was at some time, under names that its users give. It lies in the
/// database itself, so all its processes can restore what one of them has kept. Each function is a
/// transaction of its own.
class Snapshots {
 public:
  /// So many are kept at most.
  static constexpr std::int64_t kMost = 100;

  explicit Snapshots(Database& database) : database_(database) {}

  /// In the order of their names.
  std::vector<Snapshot> all();
  /// Keeps what there is now, in the place of a snapshot of the same name. A name has letters,
  /// digits, '.', '_' and '-' in it, 64 at most.
  void take(std::string_view name);
  void restore(std::string_view name);
  void remove(std::string_view name);
  /// Puts back what a new store made from this seed holds.
  void reset(std::uint64_t seed);

 private:
  std::int64_t need(std::string_view name);
  void drop(std::string_view name);
  void clear_data();

  Database& database_;
};

}  // namespace bvconn::sandbox
