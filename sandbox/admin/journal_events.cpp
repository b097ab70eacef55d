#include <algorithm>
#include <atomic>
#include <charconv>
#include <chrono>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "sandbox/admin/admin.h"
#include "sandbox/contract/words.h"
#include "sandbox/journal/journal_filter.h"
#include "sandbox/journal/mask_entry.h"

namespace bvconn::sandbox {
namespace {

using Json = nlohmann::ordered_json;
using Clock = std::chrono::steady_clock;

/// So many read at a time; each costs a connection and a look into the journal now and then.
constexpr int kMostReaders = 16;
/// So many exchanges at once, the latest; a reader is told how many more there were.
constexpr std::size_t kMostAtOnce = 100;
/// A connection on which nothing comes for longer is taken for dead by what lies in between.
constexpr std::chrono::seconds kHeartBeat{10};
/// Of a text that stands in a line of the list.
constexpr std::size_t kTextMax = 200;

std::atomic<int> readers{0};

/// A place among the readers, given back at its end.
class Place {
 public:
  Place() : free_(readers.fetch_add(1) < kMostReaders) {}
  ~Place() { readers.fetch_sub(1); }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;
  bool free() const { return free_; }

 private:
  bool free_;
};

std::string event_text(std::string_view name, const Json& data) {
  return "event: " + std::string(name) + "\ndata: " + json_text(data) + "\n\n";
}

/// What a list shows of an exchange: all but the two messages.
Json line_json(const JournalEntry& entry) {
  Json json = entry_json(masked(entry));
  json["status"] = entry.status;
  json["differences"] = entry.differences.size();
  json.erase("request");
  json.erase("reply");
  for (auto& [name, value] : json["arguments"].items()) {
    value = shortened(value.get<std::string>(), kTextMax);
  }
  if (json.contains("remark")) json["remark"] = shortened(json["remark"].get<std::string>());
  return json;
}

class JournalEvents : public ReplyStream {
 public:
  JournalEvents(std::shared_ptr<const Journal> journal, JournalFilter filter, std::uint64_t after,
                std::shared_ptr<Place> place)
      : journal_(std::move(journal)),
        filter_(std::move(filter)),
        after_(after),
        place_(std::move(place)) {}

  std::string next() override {
    std::string text;
    if (!begun_) begin(text);
    auto entries = journal_->after(after_);
    if (!entries.empty()) after_ = entries.back()->id;
    std::erase_if(entries, [&](const EntryPointer& each) { return !matches(filter_, *each); });
    append(entries, text);
    if (!text.empty()) {
      last_ = Clock::now();
    } else if (Clock::now() - last_ > kHeartBeat) {
      last_ = Clock::now();
      text = ": still here\n\n";
    }
    return text;
  }

 private:
  /// A number from before the sandbox was started anew says nothing: then the reader gets all, and
  /// is told to forget what it has.
  void begin(std::string& text) {
    begun_ = true;
    const bool goes_on = after_ > 0 && !journal_->after(after_ - 1, 1).empty();
    if (!goes_on) after_ = 0;
    text.append("retry: 1000\n").append(event_text("begin", {{"goesOn", goes_on}}));
  }

  void append(const std::vector<EntryPointer>& entries, std::string& text) const {
    const std::size_t left_out = entries.size() - std::min(entries.size(), kMostAtOnce);
    if (left_out > 0) text.append(event_text("leftOut", {{"count", left_out}}));
    for (std::size_t i = left_out; i < entries.size(); ++i) {
      text.append("id: ").append(std::to_string(entries[i]->id)).append("\n");
      text.append(event_text("exchange", line_json(*entries[i])));
    }
  }

  std::shared_ptr<const Journal> journal_;
  JournalFilter filter_;
  std::uint64_t after_;
  std::shared_ptr<Place> place_;
  bool begun_ = false;
  Clock::time_point last_ = Clock::now();
};

/// Where the reader was when its connection was lost; 0 for one that is new.
std::uint64_t last_event(const Request& request) {
  const std::string text = request.header("Last-Event-ID").value_or("");
  std::uint64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

}  // namespace

Reply follow_journal(AdminCall& call) {
  expect_query(call, filter_fields());
  auto place = std::make_shared<Place>();
  if (!place->free()) {
    throw AdminRefusal{503, std::to_string(kMostReaders) + " readers follow the journal already"};
  }
  Reply reply{.status = 200,
              .headers = {{"Content-Type", "text/event-stream"}, {"Cache-Control", "no-store"}},
              .body = {}};
  reply.stream = std::make_shared<JournalEvents>(journal_of(call), filter_of(call),
                                                 last_event(call.request), std::move(place));
  return reply;
}

}  // namespace bvconn::sandbox
