#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
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

/// Whether a request is one of those that the rule is about, whatever was counted so far.
bool matches(const FaultRule& rule, const Exchange& exchange, const Request& request);
/// Counts one more of these requests; whether it is hit.
bool counts_as_hit(FaultInForce& fault);
/// Names those that have no name "fault-1" and so on, after the last number so far. Throws BadFault
/// for a name that is taken.
void name_faults(std::vector<FaultRule>& rules, std::set<std::string> taken,
                 std::int64_t& last_number);

/// The faults that are in force, in the order in which they were added. All may be called on
/// several threads at once.
class FaultBook {
 public:
  /// Far more than anybody sets by hand; so many are looked through at each request.
  static constexpr std::size_t kMost = 1'000;

  virtual ~FaultBook() = default;

  /// Adds them all, or throws BadFault: for more than there may be, and for a name that is taken.
  /// Gives their names.
  virtual std::vector<std::string> add(std::vector<FaultRule> rules) = 0;
  /// Adds those with which a process begins.
  virtual void begin_with(std::vector<FaultRule> rules) { add(std::move(rules)); }
  /// False where none has this name.
  virtual bool remove(std::string_view name) = 0;
  /// How many there were.
  virtual std::size_t clear() = 0;
  virtual std::vector<FaultInForce> list() const = 0;

  /// The first fault that hits this request, which has then been counted; null where none does.
  virtual std::shared_ptr<const FaultRule> next(const Exchange& exchange,
                                                const Request& request) = 0;

  /// Keeps a right answer for the next request on its route while a fault may come to want it; one
  /// of more than 1 MiB is not kept. Gives the one before, "" where there is none.
  std::string keep_answer(Route route, const std::string& answer);

 private:
  /// Whether there is a fault that answers by what another request was answered.
  virtual bool wants_answers() const = 0;
  /// Puts an answer in the place of the one that is kept for its route; gives that one.
  virtual std::string exchange_answer(Route route, const std::string& answer) = 0;
};

/// Faults that end with the process.
class MemoryFaultBook : public FaultBook {
 public:
  std::vector<std::string> add(std::vector<FaultRule> rules) override;
  bool remove(std::string_view name) override;
  std::size_t clear() override;
  std::vector<FaultInForce> list() const override;
  std::shared_ptr<const FaultRule> next(const Exchange& exchange, const Request& request) override;

 private:
  bool wants_answers() const override;
  std::string exchange_answer(Route route, const std::string& answer) override;

  std::mutex answers_mutex_;
  std::array<std::string, 2> answers_;
  mutable std::mutex mutex_;
  std::vector<FaultInForce> faults_;
  std::int64_t named_ = 0;
  /// So that a sandbox without faults does not wait for the mutex.
  std::atomic<bool> is_empty_ = true;
};

}  // namespace bvconn::sandbox
