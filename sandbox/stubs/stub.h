#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sandbox/exchange.h"

/// Answers that the user of a sandbox gives himself. They win over the store.
namespace bvconn::sandbox {

/// How a text has to be.
struct TextMatch {
  enum class Kind : std::uint8_t {
    kExact,
    kContains,
    kPattern,  ///< "*" stands for any text, "?" for one character
  };

  Kind kind = Kind::kExact;
  std::string text;

  bool fits(std::string_view found) const;
};

/// A piece of an answer: XML as it stands, or a hole that the request fills.
struct AnswerPiece {
  std::string text;  ///< of a hole its name
  bool is_hole = false;
};

/// Which requests are answered, and by what. What nobody gave leaves open.
struct StubRule {
  std::string operation;  ///< as `Exchange::can_be` takes it
  std::optional<Route> route;
  std::optional<TextMatch> session;
  /// By their names in the interface.
  std::vector<std::pair<std::string, TextMatch>> arguments;
  /// So many requests are answered.
  std::optional<std::int64_t> times;
  std::string answer;  ///< as it was given
  std::vector<AnswerPiece> pieces;
  /// The answer is a whole envelope, not what stands in the method's response.
  bool is_envelope = false;
  bool is_fault = false;

  bool fits(const Exchange& exchange) const;
  /// The answer to this request. Throws std::length_error for one that grows beyond all bounds.
  std::string filled(const Exchange& exchange) const;
};

struct Stub {
  Stub(std::string name, StubRule what) : id(std::move(name)), rule(std::move(what)) {}

  const std::string id;
  const StubRule rule;
  std::atomic<std::int64_t> answered{0};
};

/// The stubs that are set, bounded in number and size. For use on several threads.
class StubBook {
 public:
  using Stubs = std::vector<std::shared_ptr<Stub>>;

  virtual ~StubBook() = default;

  /// Sets them all, or throws std::length_error and sets none; gives those that were set.
  virtual Stubs add(std::vector<StubRule> rules) = 0;
  /// In the order in which they were set.
  virtual Stubs all() const = 0;
  /// False where there is none.
  virtual bool remove(std::string_view id) = 0;
  virtual void clear() = 0;
  /// Of those that fit and have not answered as often as they may, the one that was set last. This
  /// counts as an answer.
  virtual std::shared_ptr<const Stub> take(const Exchange& exchange) = 0;
};

/// Throws std::length_error for more stubs, or more bytes of their answers, than there may be.
void expect_room_for_stubs(std::size_t count, std::size_t answer_bytes);

/// Stubs that end with the process.
class MemoryStubBook : public StubBook {
 public:
  Stubs add(std::vector<StubRule> rules) override;
  Stubs all() const override;
  bool remove(std::string_view id) override;
  void clear() override;
  std::shared_ptr<const Stub> take(const Exchange& exchange) override;

 private:
  mutable std::mutex mutex_;
  /// Replaced as a whole by each change, so that requests look into it without the mutex.
  std::shared_ptr<const Stubs> stubs_ = std::make_shared<const Stubs>();
  std::int64_t next_id_ = 1;
};

}  // namespace bvconn::sandbox
