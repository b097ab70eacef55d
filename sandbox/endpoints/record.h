#pragma once

#include <chrono>

#include "sandbox/endpoints/asked.h"
#include "sandbox/journal/journal.h"

namespace bvconn::sandbox {

/// Makes the journal's entry of one exchange, if there is a journal. Whatever fails in that is no
/// reason not to answer.
class Record {
 public:
  explicit Record(const Sandbox& sandbox) : journal_(sandbox.journal.get()) {}

  /// Notes what was asked: before it is answered, since an operation may change what it was given.
  void begin(const Request& request, const Asked& asked) noexcept;
  /// Notes what became of it, and hands the entry to the journal.
  void end(const Asked& asked, const Reply& reply) noexcept;

 private:
  Journal* journal_;
  std::chrono::system_clock::time_point at_ = std::chrono::system_clock::now();
  std::chrono::steady_clock::time_point began_ = std::chrono::steady_clock::now();
  JournalEntry entry_;
};

}  // namespace bvconn::sandbox
