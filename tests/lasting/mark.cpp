#include "lasting/mark.h"

#include <algorithm>
#include <array>
#include <optional>

namespace bvconn::test {
namespace {

constexpr std::size_t kDigits = 9;

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

std::optional<Mark> mark_of(std::string_view digits) {
  const auto digit = [&](std::size_t index) { return digits[index] - '0'; };
  if (digits.size() != kDigits || digit(0) != 1) return std::nullopt;
  if (digit(3) >= kMishaps || digit(4) >= kAnswerings) return std::nullopt;
  Mark mark{.thread = digit(1),
            .session = digit(2),
            .mishap = static_cast<Mishap>(digit(3)),
            .answering = static_cast<Answering>(digit(4))};
  for (std::size_t index = 5; index < kDigits; ++index) mark.count = mark.count * 10 + digit(index);
  return mark;
}

/// Hands out the text in pieces: runs of digits, and what lies between them.
template <class Piece>
void for_each_piece(std::string_view text, const Piece& piece) {
  while (!text.empty()) {
    const bool digits = is_digit(text.front());
    const auto* const end =
        std::find_if(text.begin(), text.end(), [digits](char c) { return is_digit(c) != digits; });
    const auto size = static_cast<std::size_t>(end - text.begin());
    piece(text.substr(0, size), digits);
    text.remove_prefix(size);
  }
}

}  // namespace

std::string_view mishap_name(Mishap mishap) {
  constexpr std::array<std::string_view, kMishaps> kNames{"none",  "reset",   "closed",  "cut",
                                                          "fault", "refused", "not XML", "silence"};
  return kNames[static_cast<std::size_t>(mishap)];
}

std::string Mark::text() const {
  const int number = (((10 + thread) * 10 + session) * 10 + static_cast<int>(mishap)) * 10 +
                     static_cast<int>(answering);
  return std::to_string(number * 10'000 + count % 10'000);
}

std::vector<Mark> marks_in(std::string_view text) {
  std::vector<Mark> marks;
  for_each_piece(text, [&](std::string_view piece, bool digits) {
    if (!digits) return;
    if (const auto mark = mark_of(piece)) marks.push_back(*mark);
  });
  return marks;
}

std::string without_marks(std::string_view text) {
  std::string plain;
  for_each_piece(text, [&](std::string_view piece, bool digits) {
    plain += digits && mark_of(piece) ? "#" : piece;
  });
  return plain;
}

}  // namespace bvconn::test
