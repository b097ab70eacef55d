#include "sandbox/journal/entry_json.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <ctime>
#include <nlohmann/json.hpp>

namespace bvconn::sandbox {
namespace {

using Json = nlohmann::ordered_json;
using std::chrono::microseconds;

constexpr std::int64_t kMicrosPerSecond = 1'000'000;

Json body_json(const BoundedText& body) {
  Json json{{"body", body.text}, {"size", body.size}};
  if (body.cut()) json["cut"] = true;
  return json;
}

Json differences_json(const JournalEntry& entry) {
  Json all = Json::array();
  for (const Difference& each : entry.differences) all.push_back(difference_json(each));
  return all;
}

Json arguments_json(const JournalEntry& entry) {
  Json all = Json::object();
  for (const auto& each : entry.arguments) {
    if (const std::string* value = entry.argument(each.name)) all[each.name] = *value;
  }
  return all;
}

/// The digits of a fraction as microseconds; nothing where other characters stand among them.
std::optional<std::int64_t> fraction_of(std::string_view digits) {
  std::int64_t micros = 0;
  std::int64_t unit = kMicrosPerSecond;
  for (const char digit : digits) {
    if (digit < '0' || digit > '9') return std::nullopt;
    unit /= 10;
    micros += (digit - '0') * unit;
  }
  return micros;
}

}  // namespace

std::string moment_text(Moment moment) {
  const auto micros = std::chrono::duration_cast<microseconds>(moment.time_since_epoch()).count();
  const std::time_t seconds = static_cast<std::time_t>(micros / kMicrosPerSecond);
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%06dZ",
                parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min,
                parts.tm_sec, static_cast<int>(micros % kMicrosPerSecond));
  return text.data();
}

std::optional<Moment> moment_of(std::string_view text) {
  constexpr std::string_view kForm = "0000-00-00T00:00:00";
  if (text.size() <= kForm.size() || text.back() != 'Z') return std::nullopt;
  std::array<int, 6> numbers{};
  std::size_t at = 0;
  for (int& number : numbers) {
    const std::size_t end = std::min(kForm.find_first_not_of('0', at), kForm.size());
    const auto read = std::from_chars(text.data() + at, text.data() + end, number);
    const bool is_whole = read.ec == std::errc() && read.ptr == text.data() + end && number >= 0;
    if (!is_whole || (end < kForm.size() && text[end] != kForm[end])) return std::nullopt;
    at = end + 1;
  }
  std::string_view rest = text.substr(kForm.size());
  rest.remove_suffix(1);
  if (!rest.empty() && (rest.front() != '.' || rest.size() < 2)) return std::nullopt;
  const auto micros = fraction_of(rest.empty() ? rest : rest.substr(1));
  if (!micros) return std::nullopt;
  std::tm parts{};
  parts.tm_year = numbers[0] - 1900;
  parts.tm_mon = numbers[1] - 1;
  parts.tm_mday = numbers[2];
  parts.tm_hour = numbers[3];
  parts.tm_min = numbers[4];
  parts.tm_sec = numbers[5];
  return std::chrono::system_clock::from_time_t(timegm(&parts)) + microseconds(*micros);
}

Json difference_json(const Difference& difference) {
  return {{"at", difference.at.empty() ? "the request" : difference.at},
          {"found", difference.found},
          {"expected", difference.expected}};
}

Json entry_json(const JournalEntry& entry) {
  Json json{{"id", entry.id},
            {"at", moment_text(entry.at)},
            {"micros", entry.micros},
            {"route", route_text(entry.route)},
            {"operations", entry.operations},
            {"service", entry.service},
            {"method", entry.method},
            {"session", entry.session},
            {"arguments", arguments_json(entry)},
            {"outcome", outcome_text(entry.outcome)}};
  if (!entry.answered_by.empty()) json["answeredBy"] = entry.answered_by;
  if (!entry.remark.empty()) json["remark"] = entry.remark;
  json["differences"] = differences_json(entry);
  Json& request = json["request"] = {
      {"method", entry.http_method}, {"target", entry.target}, {"headers", entry.request_headers}};
  request.update(body_json(entry.request));
  Json& reply = json["reply"] = {{"status", entry.status}, {"headers", entry.reply_headers}};
  reply.update(body_json(entry.reply));
  return json;
}

std::string json_text(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace bvconn::sandbox
