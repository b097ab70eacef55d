#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/automation/interface.h"
#include "bvconn/platform/platform.h"
#include "lasting/mark.h"

namespace bvconn::test {

/// What a call has for its texts and variants. No operation takes all of these.
enum class Texts : std::uint8_t {
  kMarks,         ///< the mark
  kArrays,        ///< the mark, and arrays of it for variants
  kSmallNumbers,  ///< what fits 16 bits, and so no mark
  kNames,         ///< the mark as a name
};
inline constexpr int kTexts = 4;

/// An operation on one of the routes, with arguments that it takes.
struct EveryCall {
  const automation::ClassInfo* info = nullptr;
  const automation::Member* operation = nullptr;
  bool dal = false;
  Texts texts = Texts::kMarks;
  Answering answering = Answering::kAddress;
  bool sends = false;
  /// A few send nothing of their own on the data access layer, and are known by their login alone.
  bool bears_mark = false;

  /// "BVInvoiceConnector.GetInvoice by SOAP"
  std::string name() const;
};

/// Where calls go.
struct Addresses {
  std::string soap;  ///< the mark of the call follows it
  std::string dal;
};

/// How a call ended, without what is its own alone: two calls that differ in nothing but their
/// marks end alike.
struct Ending {
  std::int32_t raised = 0;  ///< the number of its error; 0 where it returned
  std::string result;       ///< as XML
  std::size_t exchanges = 0;
  bool in_contact = false;  ///< it moved the time of the last contact

  friend bool operator==(const Ending&, const Ending&) = default;
  std::string words() const;
};

/// The real world, but for its clocks: each session has one that stands still, at a time that no
/// other session has.
platform::Platform platform_with_own_times();

/// The calls of one session of the calling thread, whose clock has to be its own.
class Caller {
 public:
  /// Logs in to the data access layer, and lets the session settle whatever it looks up once.
  Caller(const Addresses& addresses, int thread, int session);

  /// Makes a call, and looks at what the session recorded of it.
  Ending call(const EveryCall& call, Mishap mishap);

  /// The mark of the last call.
  const Mark& mark() const { return mark_; }
  /// What the last call was given, or recorded, of another call.
  const std::vector<std::string>& complaints() const { return complaints_; }

 private:
  std::string text_for(const EveryCall& call) const;
  automation::Value argument(const automation::Argument& argument, const EveryCall& call) const;
  std::vector<automation::Value> arguments(const EveryCall& call);
  void look_at_records(const EveryCall& call);

  Addresses addresses_;
  Mark mark_;
  Mark login_;
  Date time_;  ///< of the session's clock
  std::vector<std::string> complaints_;
  std::shared_ptr<XMLDocument> document_;
};

/// All operations on both routes, in the order of the interface, with arguments and answers that
/// were found to make them send and succeed where they can.
std::vector<EveryCall> every_call(Caller& caller);

/// What of a mishap the call can have: without a mark none, and a heart beat no silence, since its
/// own time-out is too long to wait for.
Mishap mishap_for(const EveryCall& call, Mishap mishap);

}  // namespace bvconn::test
