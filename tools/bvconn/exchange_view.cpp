#include "exchange_view.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "arguments.h"
#include "bvconn/core/session_state.h"
#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/conversions/text.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/exchange/loose_tokens.h"
#include "json_text.h"

namespace bvconn::tool {
namespace {

using detail::LooseTokens;
using detail::Token;
using detail::TokenKind;

constexpr std::size_t kStep = 2;
// A text of 64 KiB may nest thousands deep, and its blanks would be far more than itself.
constexpr std::size_t kDeepestStep = 40;
constexpr std::string_view kBlanks = " \t\r\n";

std::string trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return "";
  return std::string(text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin));
}

/// XML with one element a line; one that holds text alone stays on its line.
class XmlLines {
 public:
  XmlLines(std::string_view text, std::size_t indent) : indent_(indent) {
    LooseTokens tokens(text);
    for (Token token; tokens.next(token);) {
      if (token.kind != TokenKind::kText || !trimmed(token.raw).empty()) tokens_.push_back(token);
    }
  }

  std::string run() {
    for (std::size_t at = 0; at < tokens_.size();) {
      if (kind(at) == TokenKind::kEnd && depth_ > 0) --depth_;
      const std::size_t count = on_one_line(at);
      begin_line();
      for (std::size_t i = at; i < at + count; ++i) detail::append_escaped(out_, shown(i));
      out_.push_back('\n');
      if (count == 1 && kind(at) == TokenKind::kStart) ++depth_;
      at += count;
    }
    return std::move(out_);
  }

 private:
  TokenKind kind(std::size_t at) const {
    return at < tokens_.size() ? tokens_[at].kind : TokenKind::kOther;
  }
  std::string shown(std::size_t at) const {
    return kind(at) == TokenKind::kText ? trimmed(tokens_[at].raw) : std::string(tokens_[at].raw);
  }
  std::size_t on_one_line(std::size_t at) const {
    if (kind(at) != TokenKind::kStart) return 1;
    if (kind(at + 1) == TokenKind::kEnd) return 2;
    return kind(at + 1) == TokenKind::kText && kind(at + 2) == TokenKind::kEnd ? 3 : 1;
  }
  void begin_line() { out_.append(indent_ + kStep * std::min(depth_, kDeepestStep), ' '); }

  std::vector<Token> tokens_;
  std::size_t indent_;
  std::size_t depth_ = 0;
  std::string out_;
};

std::optional<std::string> laid_out_json(std::string_view text) {
  if (!text.starts_with('{') && !text.starts_with('[')) return std::nullopt;
  try {
    static_cast<void>(parse_json(text));
    return Json::parse(text).dump(kStep, ' ', false, Json::error_handler_t::replace);
  } catch (const UsageError&) {
    return std::nullopt;
  }
}

std::string lines_of(std::string_view text, std::size_t indent) {
  std::string out;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (!line.empty()) out.append(indent, ' ');
    detail::append_escaped(out, line);
    out.push_back('\n');
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return out;
}

/// "12.345"
std::string milliseconds(std::int64_t microseconds) {
  constexpr std::int64_t kThousand = 1000;
  const std::string rest = std::to_string(microseconds % kThousand);
  return std::to_string(microseconds / kThousand) + "." + std::string(3 - rest.size(), '0') + rest;
}

/// The lines of one exchange.
class View {
 public:
  explicit View(const Exchange& exchange) : exchange_(exchange) {}

  std::string run() {
    add_title();
    add_address();
    add_outcome();
    add_measures();
    add_texts();
    return std::move(out_);
  }

 private:
  bool by_soap() const { return exchange_.route == ExchangeRoute::kSoap; }

  void field(std::string_view name, std::string_view value) {
    constexpr std::size_t kNameWidth = 12;
    out_.append("  ").append(name).append(kNameWidth - std::min(name.size(), kNameWidth), ' ');
    detail::append_escaped(out_, value);
    out_.push_back('\n');
  }

  void text(std::string_view title, const BoundedText& text) {
    if (text.size == 0) return;
    out_.append("  ").append(title).append(" (").append(std::to_string(text.size)).append(" bytes");
    if (text.cut()) out_.append(", of which the first ").append(std::to_string(kKeptTextMax));
    out_.append(")\n").append(indented_text(text.text, 2 * kStep));
  }

  void add_title() {
    out_.append("exchange ").append(std::to_string(exchange_.number)).append(": ");
    if (!exchange_.cls.empty()) {
      out_.append(exchange_.cls).append(".").append(exchange_.operation).append(" ");
    }
    out_.append(by_soap() ? "by SOAP" : "by the data access layer")
        .append(" at ")
        .append(conversions::iso_date_text(exchange_.at))
        .append("\n");
  }

  void add_address() {
    field("to", exchange_.url);
    if (!by_soap()) {
      field("calls", exchange_.object + "." + exchange_.object_operation);
    } else if (exchange_.soap_action) {
      field("SOAPAction", "\"" + *exchange_.soap_action + "\"");
    }
  }

  void add_outcome() {
    field("outcome", outcome_text(exchange_.outcome));
    if (exchange_.error) {
      const ExchangeError& error = *exchange_.error;
      field("error", hex_number(error.number) + " from " + error.source + ": " + error.description);
    }
    // Where the caller was given another error than the one that came about.
    if (exchange_.raised && (!exchange_.error || *exchange_.raised != exchange_.error->number)) {
      field("raised", hex_number(*exchange_.raised));
    }
    if (exchange_.error && !exchange_.raised) field("raised", "nothing; the call returned");
    if (exchange_.http_status != 0) field("HTTP", std::to_string(exchange_.http_status));
  }

  void add_measures() {
    const ExchangeTimes& times = exchange_.times;
    std::string line;
    const auto add = [&line](std::string_view step, std::int64_t microseconds) {
      if (microseconds == 0) return;
      line.append(line.empty() ? "" : ", ")
          .append(step)
          .append(" ")
          .append(milliseconds(microseconds));
    };
    add("name", times.name_us);
    add("connect", times.connect_us);
    add("TLS", times.tls_us);
    add("send", times.send_us);
    add("wait", times.wait_us);
    add("receive", times.receive_us);
    add("all", times.total_us);
    if (!line.empty()) field("times (ms)", line);
    if (exchange_.bytes_sent != 0 || exchange_.bytes_received != 0) {
      field("bytes", std::to_string(exchange_.bytes_sent) + " sent, " +
                         std::to_string(exchange_.bytes_received) + " received");
    }
  }

  void add_texts() {
    text("request", exchange_.request);
    for (std::size_t i = 0; i < exchange_.arguments.size(); ++i) {
      const ExchangeArgument& argument = exchange_.arguments[i];
      const std::string title = "argument " + std::to_string(i + 1) + ", " + argument.type;
      if (argument.text.size == 0) out_.append("  ").append(title).append(", empty\n");
      text(title, argument.text);
    }
    text("result", exchange_.result);
    text("reply headers", exchange_.reply_headers);
    text("reply", exchange_.reply);
  }

  const Exchange& exchange_;
  std::string out_;
};

}  // namespace

std::string indented_text(std::string_view text, std::size_t indent) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin != std::string_view::npos && text[begin] == '<') return XmlLines(text, indent).run();
  text = text.substr(0, text.find_last_not_of(kBlanks) + 1);
  return lines_of(laid_out_json(text).value_or(std::string(text)), indent);
}

std::string exchange_view(const Exchange& exchange) {
  return View(exchange).run();
}

void print_exchanges(std::ostream& out) {
  const auto exchanges = session().Exchanges();
  if (exchanges.empty()) out << "bvconn: nothing was sent\n";
  for (const Exchange& exchange : exchanges) out << exchange_view(exchange);
}

}  // namespace bvconn::tool
