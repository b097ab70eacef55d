#include "fuzzing.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "bvconn/platform/conversions/text.h"

namespace bvconn::fuzz {
namespace {

// Longer than any that the library composes: URL, headers and words of a server are cut.
constexpr std::size_t kDescriptionMax = 4096;

}  // namespace

void found(std::string_view what, std::string_view detail) {
  std::string escaped;
  bvconn::detail::append_escaped(escaped, detail);
  std::fprintf(stderr, "found: %.*s\n%s\n", static_cast<int>(what.size()), what.data(),
               escaped.c_str());
  std::abort();
}

void require_error(const Error& error, std::initializer_list<std::int32_t> numbers) {
  const std::string shown =
      hex_number(error.number) + " " + error.source + ": " + error.description;
  require(std::find(numbers.begin(), numbers.end(), error.number) != numbers.end(),
          "an error with a number that it cannot have", shown);
  require(!error.source.empty(), "an error without a source", shown);
  require(error.description.size() <= kDescriptionMax, "a description without end", shown);
  require(bvconn::detail::is_utf8(error.description), "a description that is no UTF-8", shown);
  const auto is_control = [](char c) { return static_cast<unsigned char>(c) < 0x20; };
  require(std::none_of(error.description.begin(), error.description.end(), is_control),
          "a description with control characters", shown);
}

std::string_view Choices::take(std::size_t size) {
  const std::string_view taken = rest_.substr(0, size);
  rest_.remove_prefix(taken.size());
  return taken;
}

std::uint8_t Choices::byte() {
  const std::string_view taken = take(1);
  return taken.empty() ? std::uint8_t{0} : static_cast<std::uint8_t>(taken.front());
}

std::uint64_t Choices::number(std::size_t bytes) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < bytes; ++i) value |= std::uint64_t{byte()} << (8 * i);
  return value;
}

std::string_view Choices::text(std::size_t size_max) {
  return take(std::min<std::size_t>(byte(), size_max));
}

std::string_view Choices::line() {
  const std::size_t end = rest_.find('\n');
  const std::string_view taken = take(end);
  take(1);
  return taken;
}

}  // namespace bvconn::fuzz
