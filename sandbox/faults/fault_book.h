#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/exchange.h"
#include "sandbox/faults/fault.h"
#include "sandbox/http/message.h"

namespace bvconn::sandbox {

/// A fault with what became of it.
struct FaultInForce {
  std::shared_ptr<const FaultRule> rule;
  std::int64_t seen = 0;  ///< requests that it could have hit
  std::int64_t hit = 0;   ///< those it did
};

/// The faults that are in force, in the order in which they were added. All may be called on
/// several threads at once.
class FaultBook {
 public:
  /// Far more than anybody sets by hand; so many are looked through at each request.
  static constexpr std::size_t kMost = 1'000;

  /// Adds them all, or throws BadFault: for more than there may be, and for a name that is taken.
  /// Gives their names.
  std::vector<std::string> add(std::vector<FaultRule> rules);
  /// False where none has this name.
  bool remove(std::string_view name);
  /// How many there were.
  std::size_t clear();
  std::vector<FaultInForce> list() const;

  /// The first fault that hits this request, which has then been counted; null where none does.
  std::shared_ptr<const FaultRule> next(const Exchange& exchange, const Request& request);

  /// Keeps a right answer for the next request on its route while a fault may come to want it; one
  /// of more than 1 MiB is not kept. Gives the one before, "" where there is none.
  std::string keep_answer(Route route, const std::string& answer);

 private:
  static bool hits(FaultInForce& fault);

  mutable std::mutex mutex_;
  std::vector<FaultInForce> faults_;
  std::array<std::string, 2> answers_;
  std::int64_t named_ = 0;
  /// So that a sandbox without faults does not wait for the mutex.
  std::atomic<bool> is_empty_ = true;
};

}  // namespace bvconn::sandbox
