#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "sandbox/store/database.h"

namespace bvconn::sandbox {

/// A rule as the database has it: its text never changes, what it has counted does.
struct SharedRule {
  std::int64_t number = 0;
  std::string name{};
  std::string text{};
  std::int64_t seen = 0;
  std::int64_t hit = 0;
};

/// Rules of one kind that all processes of a database share. What one process changes is known to
/// it at once, and to the others within a quarter of a second: a thread looks ten times a second
/// whether there is something new, so that a request needs not ask. For use on several threads;
/// what has to ask the database fails with DatabaseError where that is gone.
class SharedRules {
 public:
  using Rules = std::vector<SharedRule>;
  using Known = std::shared_ptr<const Rules>;

  /// A change that is being made: all of it will be there, or nothing.
  class Change {
   public:
    /// In the order in which they were added.
    const Rules& present() const { return present_; }
    /// The greatest number that any rule of the kind has ever had.
    std::int64_t last_number() const { return last_number_; }
    /// Under the next number.
    void add(std::string_view name, std::string_view text);
    void remove(std::int64_t number);
    /// Those of all routes.
    void forget_answers();

   private:
    friend class SharedRules;
    Change(Database& database, const std::string& kind);
    void finish();

    Database& database_;
    const std::string& kind_;
    Rules present_;
    std::int64_t last_number_ = 0;
  };

  /// Looks at one of the rules that fit a request, and counts; true ends the looking.
  using Count = std::function<bool(std::size_t which, SharedRule& counted)>;

  SharedRules(const std::string& where, std::string kind);
  ~SharedRules();
  SharedRules(const SharedRules&) = delete;
  SharedRules& operator=(const SharedRules&) = delete;

  void change(const std::function<void(Change&)>& make);
  /// As the database has them now.
  Rules all() const;
  /// As they are known, without asking; what they have counted is not.
  Known known() const;
  bool is_empty() const { return is_empty_; }
  /// Shows the rules of these numbers to `look`, one after another; those that were removed
  /// meanwhile are left out. No other process counts in between. Gives for which it was true.
  std::optional<std::size_t> count(const std::vector<std::int64_t>& numbers,
                                   const Count& look) const;
  /// Puts an answer in the place of the one that any process kept for this route before; gives that
  /// one, "" where there was none.
  std::string exchange_answer(std::string_view route, std::string_view answer) const;

 private:
  void watch();
  /// Reads what is new. To be called with the database's mutex.
  void refresh();

  const std::string kind_;
  mutable std::mutex database_mutex_;
  mutable Database database_;

  mutable std::mutex mutex_;
  Known known_ = std::make_shared<const Rules>();
  std::int64_t version_ = -1;
  std::atomic<bool> is_empty_ = true;
  std::condition_variable wake_;
  bool is_ending_ = false;
  std::thread thread_;
};

/// The known rules in the form that requests need, each of which is read once.
template <typename Rule>
class ReadRules {
 public:
  using Pointer = std::shared_ptr<const Rule>;
  using All = std::vector<std::pair<std::int64_t, Pointer>>;
  /// Null for one that cannot be read, which is then left out.
  using Read = std::function<Pointer(const SharedRule&)>;

  explicit ReadRules(Read read) : read_(std::move(read)) {}

  std::shared_ptr<const All> of(const SharedRules::Known& known) {
    const std::lock_guard lock(mutex_);
    if (known == known_) return all_;
    std::map<std::int64_t, Pointer> before(all_->begin(), all_->end());
    auto all = std::make_shared<All>();
    for (const SharedRule& each : *known) {
      const auto found = before.find(each.number);
      Pointer rule = found == before.end() ? read_(each) : found->second;
      if (rule) all->emplace_back(each.number, std::move(rule));
    }
    known_ = known;
    all_ = std::move(all);
    return all_;
  }

 private:
  Read read_;
  std::mutex mutex_;
  SharedRules::Known known_;
  std::shared_ptr<const All> all_ = std::make_shared<const All>();
};

}  // namespace bvconn::sandbox
