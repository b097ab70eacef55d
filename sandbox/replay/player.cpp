#include "sandbox/replay/player.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <string_view>
#include <utility>

#include "bvconn/platform/conversions/nearest_names.h"
#include "sandbox/contract/words.h"
#include "sandbox/endpoints/soap_text.h"
#include "sandbox/operations/operations.h"
#include "sandbox/replay/differences.h"

namespace bvconn::sandbox {
namespace {

constexpr std::string_view kLoginService = "AuthenticationService";

Reply refusal(const AskedRequest& asked, const std::string& text) {
  if (asked.route != Route::kDal) {
    return xml_reply(500, fault_text({.code = fault_codes::kClient, .text = text}));
  }
  const nlohmann::json body{{"number", dal_numbers::kNoSuchOperation},
                            {"source", shortened(asked.service)},
                            {"description", shortened(text)}};
  return json_reply(404, body.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

/// What a recording without a login leaves open, so that its calls can be made at all.
std::optional<Reply> answer_login(const AskedRequest& asked) {
  if (asked.route != Route::kDal || asked.service != kLoginService) return std::nullopt;
  if (asked.method == "GetDisabledServices") return text_reply(200, "");
  if (asked.method != "Login") return std::nullopt;
  Reply reply = text_reply(200, "replayed");
  reply.headers.push_back({.name = "Session-Token", .value = "replayed"});
  return reply;
}

/// A name as far as names are shown and compared: a client's may be as long as it likes.
std::string beginning(const std::string& name) {
  constexpr std::size_t kMost = 80;
  if (name.size() <= kMost) return name;
  std::size_t size = kMost;
  while (size > 0 && (static_cast<unsigned char>(name[size]) & 0xC0U) == 0x80U) --size;
  return name.substr(0, size) + "…";
}

}  // namespace

Player::Player(std::vector<Recorded> recorded, PlayOrder order)
    : recorded_(std::move(recorded)), order_(order), used_(recorded_.size()) {
  for (std::size_t i = 0; i < recorded_.size(); ++i) {
    const AskedRequest& request = recorded_[i].request;
    by_method_[{request.route, request.service, request.method}].push_back(i);
    logs_in_ = logs_in_ || (request.route == Route::kDal && request.service == kLoginService);
  }
}

Reply Player::answer(const AskedRequest& asked) {
  const std::lock_guard lock(mutex_);
  if (const auto found = take(asked)) return recorded_[*found].reply;
  if (!logs_in_) {
    if (auto reply = answer_login(asked)) return *reply;
  }
  return refusal(asked, complaint(asked));
}

std::optional<std::size_t> Player::take(const AskedRequest& asked) {
  if (order_ == PlayOrder::kRecorded) {
    if (next_ == recorded_.size() || !stands_for(recorded_[next_].request, asked)) {
      return std::nullopt;
    }
    return next_++;
  }
  const auto bucket = by_method_.find({asked.route, asked.service, asked.method});
  if (bucket == by_method_.end()) return std::nullopt;
  std::optional<std::size_t> last;
  for (const std::size_t i : bucket->second) {
    if (!stands_for(recorded_[i].request, asked)) continue;
    last = i;
    if (!used_[i]) break;
  }
  if (last) used_[*last] = true;
  return last;
}

std::string Player::complaint(const AskedRequest& asked) const {
  const std::string title(beginning(asked.title()));
  if (order_ == PlayOrder::kRecorded && next_ == recorded_.size()) {
    return title + " was asked after the last recorded exchange, " + recorded_.back().place;
  }
  const auto told = [&](const Recorded& other) {
    return other.place + ": " +
           listed(differences(other.request, asked), "; ",
                  [](const std::string& each) { return each; });
  };
  if (order_ == PlayOrder::kRecorded) {
    return title + " as it was asked is not the next recorded exchange, " + told(recorded_[next_]);
  }
  return "No recorded exchange answers " + title + " as it was asked; the nearest is " +
         told(nearest(asked));
}

const Recorded& Player::nearest(const AskedRequest& asked) const {
  const auto same = by_method_.find({asked.route, asked.service, asked.method});
  const auto& members = same == by_method_.end() ? nearest_method(asked) : same->second;
  const auto count = [&](std::size_t i) { return differences(recorded_[i].request, asked).size(); };
  return recorded_[*std::min_element(members.begin(), members.end(),
                                     [&](auto a, auto b) { return count(a) < count(b); })];
}

const std::vector<std::size_t>& Player::nearest_method(const AskedRequest& asked) const {
  // So many names can be compared without anybody waiting for it.
  constexpr std::size_t kMostNames = 1'000;
  std::size_t names = 0;
  std::size_t fewest = std::numeric_limits<std::size_t>::max();
  const std::vector<std::size_t>* nearest = nullptr;
  for (const auto& [key, members] : by_method_) {
    if (++names > kMostNames) break;
    const AskedRequest& other = recorded_[members.front()].request;
    const std::size_t slips = slips_between(beginning(asked.method), beginning(other.method));
    const std::size_t titles = slips_between(beginning(asked.title()), beginning(other.title()));
    // Of names that are as near the one on the same route, and of the same service.
    const std::size_t distance = 4 * std::min(slips, titles) +
                                 (other.route != asked.route ? 2 : 0) +
                                 (other.service != asked.service ? 1 : 0);
    if (distance >= fewest) continue;
    fewest = distance;
    nearest = &members;
  }
  return *nearest;
}

}  // namespace bvconn::sandbox
