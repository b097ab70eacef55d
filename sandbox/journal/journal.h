#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "bvconn/platform/exchange/exchange.h"
#include "sandbox/contract/difference.h"
#include "sandbox/exchange.h"

/// What was asked of the sandbox and what it answered.
namespace bvconn::sandbox {

/// One exchange as it is kept: as it was, with its secrets. Who shows one masks it first (see
/// journal_view.h). Of each text the first 64 KiB are kept.
struct JournalEntry {
  struct Argument {
    std::string name;       ///< in the interface
    std::size_t place = 0;  ///< in `values`; `kSession` for the one that is the session
  };
  static constexpr std::size_t kSession = ~std::size_t{0};

  std::uint64_t id = 0;  ///< given by the journal; grows with each exchange, whatever is forgotten
  std::chrono::system_clock::time_point at;
  std::int64_t micros = 0;  ///< from the request's last byte to the reply's first

  Route route = Route::kNone;
  std::string service;
  std::string method;
  std::string session;
  /// The session stands in an envelope, where it is a secret.
  bool has_envelope = false;
  std::vector<std::string> operations;  ///< that it can come from, "BVInvoiceConnector.GetInvoice"
  std::vector<std::string> values;      ///< by place; nothing of a document beyond what is kept
  std::vector<Argument> arguments;
  std::vector<Difference> differences;
  Outcome outcome = Outcome::kAnswered;
  std::string answered_by;
  std::string remark;  ///< the words of a fault or a refusal

  std::string http_method;
  std::string target;
  std::string request_headers;  ///< a line each
  BoundedText request;
  int status = 0;
  std::string reply_headers;
  BoundedText reply;

  /// What it takes of the journal's memory, about.
  std::size_t bytes() const;
  /// The value of an argument; null where the request carries none of this name.
  const std::string* argument(std::string_view name) const;
};

using EntryPointer = std::shared_ptr<const JournalEntry>;

/// The end of a journal.
struct LatestEntries {
  std::vector<EntryPointer> entries;  ///< oldest first
  std::uint64_t before = 0;           ///< how many more are kept that are older
};

/// Keeps exchanges. Used by several threads at once.
class Journal {
 public:
  static constexpr std::size_t kAll = ~std::size_t{0};

  virtual ~Journal() = default;

  /// Keeps an exchange under a new number.
  virtual void add(JournalEntry entry) = 0;
  /// What is kept with a greater number than this, oldest first, so many at most. Who asks again
  /// with the last number that he got misses nothing but what was let go meanwhile.
  virtual std::vector<EntryPointer> after(std::uint64_t id, std::size_t most = kAll) const = 0;
  /// The latest that are kept, so many at most. What it costs does not grow with the journal.
  virtual LatestEntries latest(std::size_t most) const = 0;
  /// All that is kept.
  std::vector<EntryPointer> entries() const { return after(0); }
  /// The greatest number that was given so far; 0 before the first.
  virtual std::uint64_t last_id() const = 0;
  /// How many exchanges it has let go to make room, since it was last cleared.
  virtual std::uint64_t dropped() const = 0;
  /// Of these, how many were let go because they could not be written in time.
  virtual std::uint64_t lost() const { return 0; }
  /// Forgets all. Numbers go on where they were.
  virtual void clear() = 0;
};

/// What a journal keeps: the latest exchanges, as long as neither is exceeded.
struct JournalLimits {
  std::size_t count = 1'000;
  std::size_t bytes = 64U * 1024 * 1024;
};

/// A journal that ends with the process.
class MemoryJournal : public Journal {
 public:
  explicit MemoryJournal(JournalLimits limits) : limits_(limits) {}

  void add(JournalEntry entry) override;
  std::vector<EntryPointer> after(std::uint64_t id, std::size_t most) const override;
  LatestEntries latest(std::size_t most) const override;
  std::uint64_t last_id() const override;
  std::uint64_t dropped() const override;
  void clear() override;

 private:
  struct Kept {
    EntryPointer entry;
    std::size_t bytes = 0;
  };

  JournalLimits limits_;
  mutable std::mutex mutex_;
  std::deque<Kept> kept_;
  std::size_t bytes_ = 0;
  std::uint64_t last_id_ = 0;
  std::uint64_t dropped_ = 0;
};

}  // namespace bvconn::sandbox
