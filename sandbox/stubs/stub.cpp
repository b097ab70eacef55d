#include "sandbox/stubs/stub.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

#include "sandbox/endpoints/soap_text.h"

namespace bvconn::sandbox {
namespace {

constexpr std::size_t kMostStubs = 1'000;
constexpr std::size_t kMostAnswerBytes = 64U << 20;  // of all stubs together
constexpr std::size_t kMostFilledBytes = 16U << 20;

bool continues_character(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

bool fits_pattern(std::string_view text, std::string_view pattern) {
  std::size_t at = 0;
  std::size_t place = 0;
  // Where the last star stands, and up to where it reaches so far.
  std::size_t star = std::string_view::npos;
  std::size_t reach = 0;
  while (at < text.size()) {
    if (place < pattern.size() && pattern[place] == '*') {
      star = place++;
      reach = at;
    } else if (place < pattern.size() && pattern[place] == '?') {
      ++place;
      do ++at;
      while (at < text.size() && continues_character(text[at]));
    } else if (place < pattern.size() && pattern[place] == text[at]) {
      ++place;
      ++at;
    } else if (star != std::string_view::npos) {
      place = star + 1;
      at = ++reach;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', place) == std::string_view::npos;
}

/// The text as it can stand in an element and in an attribute.
std::string quoted_xml(std::string_view text) {
  std::string xml;
  for (const char byte : escaped(text)) {
    if (byte == '"') {
      xml.append("&quot;");
    } else if (byte == '\'') {
      xml.append("&apos;");
    } else {
      xml.push_back(byte);
    }
  }
  return xml;
}

std::string value_of(const Exchange& exchange, const std::string& hole) {
  if (hole == "session") return exchange.session;
  return exchange.argument(hole).value_or("");
}

std::size_t answer_bytes(const StubBook::Stubs& stubs) {
  std::size_t bytes = 0;
  for (const auto& each : stubs) bytes += each->rule.answer.size();
  return bytes;
}

/// Counts one more answer, unless all are given.
bool answers_once_more(Stub& stub) {
  std::int64_t count = stub.answered.load();
  do {
    if (stub.rule.times && count >= *stub.rule.times) return false;
  } while (!stub.answered.compare_exchange_weak(count, count + 1));
  return true;
}

}  // namespace

bool TextMatch::fits(std::string_view found) const {
  switch (kind) {
    case Kind::kContains:
      return found.find(text) != std::string_view::npos;
    case Kind::kPattern:
      return fits_pattern(found, text);
    case Kind::kExact:
      break;
  }
  return found == text;
}

bool StubRule::fits(const Exchange& exchange) const {
  if (!exchange.can_be(operation)) return false;
  if (route && *route != exchange.route) return false;
  if (session && !session->fits(exchange.session)) return false;
  return std::all_of(arguments.begin(), arguments.end(), [&](const auto& each) {
    const auto value = exchange.argument(each.first);
    return value && each.second.fits(*value);
  });
}

std::string StubRule::filled(const Exchange& exchange) const {
  std::string xml;
  for (const AnswerPiece& piece : pieces) {
    xml.append(piece.is_hole ? quoted_xml(value_of(exchange, piece.text)) : piece.text);
    if (xml.size() > kMostFilledBytes) {
      throw std::length_error("The answer of the stub for " + operation + " has more than " +
                              std::to_string(kMostFilledBytes) + " bytes");
    }
  }
  return xml;
}

void expect_room_for_stubs(std::size_t count, std::size_t answer_bytes) {
  if (count <= kMostStubs && answer_bytes <= kMostAnswerBytes) return;
  throw std::length_error("There may be " + std::to_string(kMostStubs) +
                          " stubs, whose answers have " + std::to_string(kMostAnswerBytes) +
                          " bytes together, and no more");
}

StubBook::Stubs MemoryStubBook::add(std::vector<StubRule> rules) {
  const std::lock_guard lock(mutex_);
  Stubs added;
  for (StubRule& each : rules) {
    const std::string id = std::to_string(next_id_ + static_cast<std::int64_t>(added.size()));
    added.push_back(std::make_shared<Stub>(id, std::move(each)));
  }
  Stubs stubs = *stubs_;
  stubs.insert(stubs.end(), added.begin(), added.end());
  expect_room_for_stubs(stubs.size(), answer_bytes(stubs));
  next_id_ += static_cast<std::int64_t>(added.size());
  stubs_ = std::make_shared<const Stubs>(std::move(stubs));
  return added;
}

StubBook::Stubs MemoryStubBook::all() const {
  const std::lock_guard lock(mutex_);
  return *stubs_;
}

bool MemoryStubBook::remove(std::string_view id) {
  const std::lock_guard lock(mutex_);
  Stubs stubs = *stubs_;
  if (std::erase_if(stubs, [&](const auto& each) { return each->id == id; }) == 0) return false;
  stubs_ = std::make_shared<const Stubs>(std::move(stubs));
  return true;
}

void MemoryStubBook::clear() {
  const std::lock_guard lock(mutex_);
  stubs_ = std::make_shared<const Stubs>();
}

std::shared_ptr<const Stub> MemoryStubBook::take(const Exchange& exchange) {
  std::shared_ptr<const Stubs> stubs;
  {
    const std::lock_guard lock(mutex_);
    stubs = stubs_;
  }
  const auto found = std::find_if(stubs->rbegin(), stubs->rend(), [&](const auto& each) {
    return each->rule.fits(exchange) && answers_once_more(*each);
  });
  if (found == stubs->rend()) return nullptr;
  return *found;
}

}  // namespace bvconn::sandbox
