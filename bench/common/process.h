#pragma once

#include <cstddef>
#include <cstdint>

/// What a process can say of itself.
namespace bench {

/// Binds the calling thread to a core; -1 is any.
void stay_on_core(int core);

struct Moment {
  std::int64_t wall_ns = 0;
  std::int64_t cpu_ns = 0;  ///< of this process alone
  std::int64_t faults = 0;  ///< pages that the kernel had to bring

  static Moment now();
  friend Moment operator-(const Moment& end, const Moment& begin);
};

/// Resident memory in bytes.
struct Memory {
  std::int64_t resident = 0;
  std::int64_t peak = 0;

  static Memory now();
  /// The same, and the peak begins anew.
  static Memory with_new_peak();
};

}  // namespace bench
