#include "sandbox/journal/stored_entry.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

namespace bvconn::sandbox {
namespace {

using nlohmann::json;
using std::chrono::microseconds;

constexpr unsigned kAscii = 0x80;

constexpr std::array<std::pair<const char*, std::string JournalEntry::*>, 9> kTexts{{
    {"service", &JournalEntry::service},
    {"method", &JournalEntry::method},
    {"session", &JournalEntry::session},
    {"answered_by", &JournalEntry::answered_by},
    {"remark", &JournalEntry::remark},
    {"http_method", &JournalEntry::http_method},
    {"target", &JournalEntry::target},
    {"request_headers", &JournalEntry::request_headers},
    {"reply_headers", &JournalEntry::reply_headers},
}};

/// Bytes need not be UTF-8, and JSON has to be: each becomes the character of its number.
std::string characters_of(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (const char each : bytes) {
    const unsigned byte = static_cast<unsigned char>(each);
    if (byte < kAscii) {
      text.push_back(each);
    } else {
      text.push_back(static_cast<char>(0xC0U | (byte >> 6U)));
      text.push_back(static_cast<char>(0x80U | (byte & 0x3FU)));
    }
  }
  return text;
}

std::string bytes_of(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    const unsigned lead = static_cast<unsigned char>(text[at]);
    if (lead < kAscii || at + 1 == text.size()) {
      bytes.push_back(text[at]);
    } else {
      const unsigned rest = static_cast<unsigned char>(text[++at]);
      bytes.push_back(static_cast<char>(static_cast<unsigned char>((lead << 6U) | (rest & 0x3FU))));
    }
  }
  return bytes;
}

json texts_of(const std::vector<std::string>& all) {
  json list = json::array();
  for (const std::string& each : all) list.push_back(characters_of(each));
  return list;
}

json body_of(const BoundedText& body) {
  return json::array({body.size, characters_of(body.text)});
}

json arguments_of(const JournalEntry& entry) {
  json list = json::array();
  for (const auto& each : entry.arguments) {
    // The session has no place.
    const auto place =
        each.place == JournalEntry::kSession ? -1 : static_cast<std::int64_t>(each.place);
    list.push_back(json::array({characters_of(each.name), place}));
  }
  return list;
}

json differences_of(const JournalEntry& entry) {
  json list = json::array();
  for (const Difference& each : entry.differences) {
    list.push_back(json::array({characters_of(each.at), characters_of(each.found),
                                characters_of(each.expected), each.is_detail}));
  }
  return list;
}

/// Reads what may be missing or of another type, which is then empty.
class Reader {
 public:
  explicit Reader(const json& object) : object_(object) {}

  const json& at(const char* name) const {
    static const json nothing;
    const auto found = object_.find(name);
    return found == object_.end() ? nothing : *found;
  }

  std::int64_t number(const char* name) const { return number_of(at(name)); }

  std::vector<std::string> texts(const char* name) const {
    std::vector<std::string> all;
    for (const json& each : at(name)) all.push_back(text_of(each));
    return all;
  }

  BoundedText body(const char* name) const {
    BoundedText body;
    const json& found = at(name);
    if (!found.is_array() || found.size() != 2) return body;
    body.size = static_cast<std::uint64_t>(number_of(found[0]));
    body.text = text_of(found[1]);
    return body;
  }

  static std::int64_t number_of(const json& value) {
    return value.is_number_integer() ? value.get<std::int64_t>() : 0;
  }

  static std::string text_of(const json& value) {
    return value.is_string() ? bytes_of(value.get_ref<const std::string&>()) : std::string();
  }

 private:
  const json& object_;
};

void read_lists(const Reader& from, JournalEntry& entry) {
  entry.operations = from.texts("operations");
  entry.values = from.texts("values");
  for (const json& each : from.at("arguments")) {
    if (!each.is_array() || each.size() != 2) continue;
    const std::int64_t place = Reader::number_of(each[1]);
    entry.arguments.push_back({Reader::text_of(each[0]), place < 0
                                                             ? JournalEntry::kSession
                                                             : static_cast<std::size_t>(place)});
  }
  for (const json& each : from.at("differences")) {
    if (!each.is_array() || each.size() != 4) continue;
    entry.differences.push_back({.at = Reader::text_of(each[0]),
                                 .found = Reader::text_of(each[1]),
                                 .expected = Reader::text_of(each[2]),
                                 .is_detail = each[3] == true});
  }
}

}  // namespace

std::string stored_text(const JournalEntry& entry) {
  const auto at = std::chrono::duration_cast<microseconds>(entry.at.time_since_epoch()).count();
  json object{{"at", at},
              {"micros", entry.micros},
              {"route", static_cast<int>(entry.route)},
              {"has_envelope", entry.has_envelope ? 1 : 0},
              {"operations", texts_of(entry.operations)},
              {"values", texts_of(entry.values)},
              {"arguments", arguments_of(entry)},
              {"differences", differences_of(entry)},
              {"outcome", static_cast<int>(entry.outcome)},
              {"request", body_of(entry.request)},
              {"status", entry.status},
              {"reply", body_of(entry.reply)}};
  for (const auto& [name, member] : kTexts) object[name] = characters_of(entry.*member);
  return object.dump();
}

JournalEntry stored_entry(std::uint64_t id, std::string_view text) {
  const json object = json::parse(text, nullptr, /*allow_exceptions=*/false);
  JournalEntry entry;
  entry.id = id;
  if (!object.is_object()) return entry;
  const Reader from(object);
  entry.at = std::chrono::system_clock::time_point(microseconds(from.number("at")));
  entry.micros = from.number("micros");
  entry.route = static_cast<Route>(from.number("route"));
  entry.outcome = static_cast<Outcome>(from.number("outcome"));
  entry.has_envelope = from.number("has_envelope") != 0;
  entry.status = static_cast<int>(from.number("status"));
  for (const auto& [name, member] : kTexts) entry.*member = Reader::text_of(from.at(name));
  entry.request = from.body("request");
  entry.reply = from.body("reply");
  read_lists(from, entry);
  return entry;
}

}  // namespace bvconn::sandbox
