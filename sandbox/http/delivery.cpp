#include "sandbox/http/delivery.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace bvconn::sandbox {
namespace {

constexpr std::string_view kHeadEnd = "\r\n\r\n";

std::string in_hexadecimal(std::size_t number) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  do {
    text.insert(text.begin(), kDigits[number % kDigits.size()]);
    number /= kDigits.size();
  } while (number > 0);
  return text;
}

/// A chunk that is right, and the size of the next one, which is none.
std::string chunks_gone_wrong(std::string_view body) {
  const std::string_view half = body.substr(0, (body.size() + 1) / 2);
  return in_hexadecimal(half.size()) + "\r\n" + std::string(half) + "\r\nxyz\r\n" +
         std::string(body.substr(half.size())) + "\r\n0\r\n\r\n";
}

/// Never below zero, which would be no length at all.
std::string stated_length(const Reply& reply, const Delivery& delivery) {
  const std::uint64_t whole = reply.body.size() + delivery.filler_bytes;
  const auto less = static_cast<std::uint64_t>(std::max<std::int64_t>(0, -delivery.length_error));
  const auto more = static_cast<std::uint64_t>(std::max<std::int64_t>(0, delivery.length_error));
  return std::to_string(whole - std::min(whole, less) + more);
}

bool ends_connection(const Delivery& delivery) {
  return delivery.cut_after || delivery.resets || delivery.length_error != 0 || delivery.bad_chunk;
}

/// The steps that send head and body, whole.
class Sending {
 public:
  explicit Sending(const Delivery& delivery) : delivery_(delivery) {}

  void send(std::string_view bytes) {
    if (bytes.empty()) return;
    if (!steps_.empty() && steps_.back().kind == Step::Kind::kSend) {
      steps_.back().bytes.append(bytes);
      return;
    }
    steps_.push_back({.bytes = std::string(bytes),
                      .pause = delivery_.pause,
                      .piece_bytes = delivery_.piece_bytes});
  }

  void body(std::string_view body) {
    const auto at = std::min(delivery_.filler_at, body.size());
    send(body.substr(0, at));
    if (delivery_.filler_bytes > 0) {
      steps_.push_back({.kind = Step::Kind::kFill, .count = delivery_.filler_bytes});
    }
    send(body.substr(at));
  }

  std::vector<Step> steps() && { return std::move(steps_); }

 private:
  const Delivery& delivery_;
  std::vector<Step> steps_;
};

std::string head_of(const Reply& reply, const Delivery& delivery, bool keep_alive) {
  std::string head = head_bytes(reply);
  if (delivery.bad_chunk) {
    head.append("Transfer-Encoding: chunked");
  } else {
    head.append("Content-Length: ").append(stated_length(reply, delivery));
  }
  const bool stays = keep_alive && !ends_connection(delivery);
  return head.append("\r\nConnection: ").append(stays ? "keep-alive" : "close").append(kHeadEnd);
}

std::vector<Step> sending_steps(const Reply& reply, const Delivery& delivery, bool keep_alive,
                                bool with_body) {
  Sending sending(delivery);
  if (delivery.cut_after && *delivery.cut_after < 0) return {};
  sending.send(head_of(reply, delivery, keep_alive));
  if (!with_body) return std::move(sending).steps();
  const std::string_view body = reply.body;
  if (delivery.bad_chunk) {
    sending.send(chunks_gone_wrong(body));
  } else if (delivery.cut_after) {
    sending.send(body.substr(0, static_cast<std::size_t>(*delivery.cut_after)));
  } else {
    sending.body(body);
  }
  return std::move(sending).steps();
}

}  // namespace

std::vector<Step> steps_of(const Reply& reply, bool keep_alive, bool with_body) {
  std::vector<Step> steps;
  if (reply.stream) {
    // Its end is that of the connection.
    steps.push_back({.bytes = head_bytes(reply).append("Connection: close").append(kHeadEnd)});
    const auto then = with_body ? Step::Kind::kFollow : Step::Kind::kClose;
    steps.push_back({.kind = then, .stream = reply.stream});
    return steps;
  }
  if (!reply.delivery) {
    steps.push_back({.bytes = to_bytes(reply, keep_alive, with_body)});
    if (!keep_alive) steps.push_back({.kind = Step::Kind::kClose});
    return steps;
  }
  const Delivery& delivery = *reply.delivery;
  if (delivery.delay.count() > 0) {
    steps.push_back({.kind = Step::Kind::kWait, .pause = delivery.delay});
  }
  std::vector<Step> sending = sending_steps(reply, delivery, keep_alive, with_body);
  std::move(sending.begin(), sending.end(), std::back_inserter(steps));
  if (delivery.resets) {
    steps.push_back({.kind = Step::Kind::kReset});
  } else if (!keep_alive || ends_connection(delivery)) {
    steps.push_back({.kind = Step::Kind::kClose});
  }
  return steps;
}

}  // namespace bvconn::sandbox
