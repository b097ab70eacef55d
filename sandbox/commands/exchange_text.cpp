#include "sandbox/commands/exchange_text.h"

#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "sandbox/contract/words.h"

namespace bvconn::sandbox {
namespace {

using nlohmann::json;

std::string text_of(const json& object, const char* name) {
  return object.value(name, std::string());
}

std::string operations_text(const json& exchange) {
  const json& operations = exchange["operations"];
  if (operations.empty()) {
    const std::string method = text_of(exchange, "method");
    return method.empty() ? "(unreadable)" : method + " in " + text_of(exchange, "service");
  }
  return listed(operations, " or ", [](const json& each) { return each.get<std::string>(); });
}

std::string milliseconds_text(std::int64_t micros) {
  constexpr double kMicrosPerMilli = 1'000.0;
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f ms", static_cast<double>(micros) / kMicrosPerMilli);
  return text.data();
}

std::string arguments_text(const json& exchange) {
  std::string text;
  for (const auto& [name, value] : exchange["arguments"].items()) {
    text.append(text.empty() ? "" : " ").append(name).append("=").append(value.get<std::string>());
  }
  return text;
}

/// Status stands in the reply, which a near miss comes without.
std::string status_text(const json& exchange) {
  return exchange.contains("reply") ? " " + exchange["reply"]["status"].dump() : "";
}

std::string message_text(const json& message) {
  std::string text = text_of(message, "headers") + "\n" + text_of(message, "body") + "\n";
  if (message.value("cut", false)) {
    text.append("(the beginning of ").append(message["size"].dump()).append(" bytes)\n");
  }
  return text;
}

}  // namespace

std::string exchange_line(const json& exchange) {
  constexpr std::size_t kTime = 11;
  constexpr std::size_t kTimeSize = 12;
  const std::string remark = text_of(exchange, "remark");
  std::string line = exchange["id"].dump() + " " +
                     text_of(exchange, "at").substr(kTime, kTimeSize) + " " +
                     text_of(exchange, "route") + " " + operations_text(exchange) + " " +
                     text_of(exchange, "outcome") + status_text(exchange) + " " +
                     milliseconds_text(exchange.value("micros", std::int64_t{0}));
  const std::string rest = remark.empty() ? arguments_text(exchange) : remark;
  if (!rest.empty()) line.append(": ").append(rest);
  return one_line(shortened(line));
}

std::string differences_text(const json& exchange) {
  std::string text;
  for (const json& each : exchange["differences"]) {
    text.append(one_line("  " + text_of(each, "at") + " " + text_of(each, "found") +
                         " | expected " + text_of(each, "expected")));
    text.push_back('\n');
  }
  return text;
}

std::string exchange_text(const json& exchange) {
  const json& request = exchange["request"];
  const std::string body = "\n" + text_of(request, "method") + " " + text_of(request, "target") +
                           "\n" + message_text(request) + "\n" +
                           exchange["reply"]["status"].dump() + "\n" +
                           message_text(exchange["reply"]);
  return exchange_line(exchange) + "\n" + differences_text(exchange) + without_controls(body);
}

}  // namespace bvconn::sandbox
