#include "sandbox/journal/mask_entry.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/exchange/mask_exchange.h"
#include "bvconn/platform/exchange/mask_request.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "sandbox/http/message.h"

namespace bvconn::sandbox {
namespace {

using nlohmann::json;

/// Between the headers of request and reply, which are masked as one text.
constexpr std::string_view kSeparator = "--\n";
/// The second argument of a login is its password; what else is masked stands behind it.
constexpr std::size_t kFirstText = 2;

std::string charset_of(std::string_view header_lines) {
  while (!header_lines.empty()) {
    const std::string_view line = header_lines.substr(0, header_lines.find('\n'));
    header_lines.remove_prefix(std::min(line.size() + 1, header_lines.size()));
    const std::size_t colon = std::min(line.find(':'), line.size());
    if (conversions::equal_ignoring_case(line.substr(0, colon), "Content-Type")) {
      return charset(line);
    }
  }
  return {};
}

std::string text_of(const json& value) {
  if (value.is_string()) return value.get<std::string>();
  return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

/// The body of a call of the data access layer.
class Call {
 public:
  explicit Call(const std::string& body)
      : whole_(json::parse(body, nullptr, /*allow_exceptions=*/false)) {}

  bool is_read() const {
    return whole_.is_object() && whole_.contains("arguments") && whole_["arguments"].is_array();
  }
  json& arguments() { return whole_["arguments"]; }
  std::string text() const { return text_of(whole_); }

 private:
  json whole_;
};

class Masking {
 public:
  explicit Masking(JournalEntry& entry) : entry_(entry), call_(body_of_call(entry)) {}

  void run() {
    put_body();
    record_.arguments.resize(std::max(record_.arguments.size(), kFirstText));
    first_text_ = record_.arguments.size();
    for (const std::string* each : texts()) put_argument(*each);
    record_.reply_headers.text =
        entry_.request_headers + std::string(kSeparator) + entry_.reply_headers;
    record_.reply = entry_.reply;
    record_.url = entry_.target;
    const bool is_good = entry_.outcome == Outcome::kAnswered || entry_.outcome == Outcome::kWarned;
    if (!is_good) record_.error = {.number = 0, .source = {}, .description = entry_.remark};
    mask_exchange(record_, entry_.has_envelope ? entry_.session : std::string());
    take_back();
  }

 private:
  static std::string body_of_call(const JournalEntry& entry) {
    return entry.route == Route::kDal ? entry.request.text : std::string();
  }

  void put_argument(std::string_view text) {
    record_.arguments.emplace_back();
    record_.arguments.back().text.assign(text);
  }

  void put_body() {
    record_.route = ExchangeRoute::kSoap;
    record_.request = entry_.request;
    if (entry_.route == Route::kDal) {
      record_.route = ExchangeRoute::kDal;
      record_.object_operation = entry_.method;
      if (call_.is_read()) {
        record_.request.clear();
        for (const json& each : call_.arguments()) put_argument(text_of(each));
      } else if (may_log_in()) {
        hide_body();
      }
    }
    if (!has_plain_tags(record_.request.text)) hide_body();
  }

  void hide_body() {
    record_.request.assign(kMasked);
    for (std::string& each : entry_.values) each.assign(kMasked);
  }

  bool may_log_in() const {
    const std::string name = conversions::upper_case(entry_.target);
    return name.find("LOGIN") != std::string::npos || name.find("AUTH") != std::string::npos;
  }

  /// Secrets are looked for byte by byte between tags, so each character of a tag has to be a byte.
  bool has_plain_tags(std::string_view text) const {
    return text.find('\0') == std::string_view::npos &&
           (entry_.route != Route::kDal || text.find("\\u00") == std::string_view::npos);
  }

  /// What may repeat a secret, beside the bodies.
  std::vector<std::string*> texts() {
    std::vector<std::string*> all;
    for (std::string& each : entry_.values) all.push_back(&each);
    for (Difference& each : entry_.differences) {
      all.insert(all.end(), {&each.at, &each.found, &each.expected});
    }
    return all;
  }

  void take_back() {
    std::size_t place = first_text_;
    for (std::string* each : texts()) *each = std::move(record_.arguments[place++].text.text);
    if (record_.error) entry_.remark = record_.error->description;
    entry_.target = record_.url;
    entry_.reply = record_.reply;
    const std::string& headers = record_.reply_headers.text;
    const std::size_t split = headers.find(kSeparator);
    entry_.request_headers = headers.substr(0, split);
    entry_.reply_headers = headers.substr(split + kSeparator.size());
    if (call_.is_read()) {
      take_call();
    } else {
      entry_.request = record_.request;
    }
    if (entry_.has_envelope) take_values_of_envelope();
    // On the data access layer, without an envelope, it is the name of a user.
    if (entry_.has_envelope && !entry_.session.empty()) entry_.session.assign(kMasked);
  }

  void take_call() {
    std::size_t place = 0;
    for (json& each : call_.arguments()) {
      const std::string& text = record_.arguments[place].text.text;
      if (text != text_of(each)) {
        each = text;
        if (place < entry_.values.size()) entry_.values[place] = text;
      }
      ++place;
    }
    const std::uint64_t size = entry_.request.size;
    entry_.request.assign(call_.text());
    entry_.request.size = size;
  }

  /// The values as they stand in the envelope whose secrets are hidden.
  void take_values_of_envelope() {
    const std::size_t count = entry_.values.size();
    entry_.values.clear();
    try {
      const auto envelope = SoapEnvelope::make();
      if (call_.is_read()) {
        envelope.Parse(record_.arguments[0].text.text, "");
      } else {
        envelope.Parse(entry_.request.text, charset_of(entry_.request_headers));
      }
      for (const SoapNode& node : envelope.Parameters()) {
        entry_.values.push_back(PlaceValue(node).text());
      }
    } catch (const Error&) {
      // Only the beginning of it was kept.
    }
    entry_.values.resize(count, std::string(kMasked));
  }

  JournalEntry& entry_;
  Call call_;
  bvconn::Exchange record_;
  std::size_t first_text_ = 0;
};

}  // namespace

JournalEntry masked(JournalEntry entry) {
  Masking(entry).run();
  return entry;
}

}  // namespace bvconn::sandbox
