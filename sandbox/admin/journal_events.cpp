#include <atomic>
#include <charconv>
#include <chrono>
#include <deque>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
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
/// So many are held at a time to find those, and so many times; the rest is for the next look.
constexpr std::size_t kPage = 200;
constexpr int kMostPages = 50;
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
  for (const char* name : {"service", "method", "session", "remark"}) {
    if (json.contains(name)) json[name] = shortened(json[name].get<std::string>(), kTextMax);
  }
  return json;
}

/// What a reader has not seen yet, and how many older ones are left out.
struct News {
  std::deque<EntryPointer> entries{};
  std::uint64_t left_out = 0;
};

class JournalEvents : public ReplyStream {
 public:
  /// Without a filter it tells of all.
  JournalEvents(std::shared_ptr<const Journal> journal, std::optional<JournalFilter> filter,
                std::uint64_t after, std::shared_ptr<Place> place)
      : journal_(std::move(journal)),
        filter_(std::move(filter)),
        after_(after),
        place_(std::move(place)) {}

  std::string next() override {
    std::string text;
    const bool is_first_look = !begun_ && !goes_on(text);
    begun_ = true;
    append(is_first_look && !filter_ ? latest() : read_on(), text);
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
  bool goes_on(std::string& text) {
    const bool goes_on = after_ > 0 && !journal_->after(after_ - 1, 1).empty();
    if (!goes_on) after_ = 0;
    text.append("retry: 1000\n").append(event_text("begin", {{"goesOn", goes_on}}));
    return goes_on;
  }

  /// The first look of who wants all: a page that is opened must not cost the whole journal.
  News latest() {
    auto found = journal_->latest(kMostAtOnce);
    if (!found.entries.empty()) after_ = found.entries.back()->id;
    return {.entries = {found.entries.begin(), found.entries.end()}, .left_out = found.before};
  }

  News read_on() {
    News news;
    for (int i = 0; i < kMostPages; ++i) {
      const auto page = journal_->after(after_, kPage);
      for (const EntryPointer& each : page) take(each, news);
      if (page.size() < kPage) break;
    }
    return news;
  }

  void take(const EntryPointer& entry, News& news) {
    after_ = entry->id;
    if (filter_ && !matches(*filter_, *entry)) return;
    news.entries.push_back(entry);
    if (news.entries.size() <= kMostAtOnce) return;
    news.entries.pop_front();
    ++news.left_out;
  }

  static void append(const News& news, std::string& text) {
    if (news.left_out > 0) text.append(event_text("leftOut", {{"count", news.left_out}}));
    for (const EntryPointer& each : news.entries) {
      text.append("id: ").append(std::to_string(each->id)).append("\n");
      text.append(event_text("exchange", line_json(*each)));
    }
  }

  std::shared_ptr<const Journal> journal_;
  std::optional<JournalFilter> filter_;
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
  std::optional<JournalFilter> filter;
  if (!call.query.empty()) filter = filter_of(call);
  reply.stream = std::make_shared<JournalEvents>(journal_of(call), std::move(filter),
                                                 last_event(call.request), std::move(place));
  return reply;
}

}  // namespace bvconn::sandbox
