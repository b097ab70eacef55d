#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace bvconn::test {

/// What the server makes of a request.
enum class Mishap : std::uint8_t {
  kNone,     ///< it answers
  kReset,    ///< it resets the connection
  kClosed,   ///< it closes the connection before the status line
  kCut,      ///< it closes the connection within the body
  kFault,    ///< it answers with a SOAP fault, code 10041
  kRefused,  ///< it answers 503, with a page
  kNotXml,   ///< what it answers is not well-formed
  kSilence,  ///< it never answers
};
inline constexpr int kMishaps = 8;

/// "reset", "silence", …
std::string_view mishap_name(Mishap mishap);

/// What the server answers where nothing goes wrong.
enum class Answering : std::uint8_t {
  kAddress,  ///< an address that ends in the mark
  kTrue,     ///< "true"
  kNumber,   ///< "7"
};
inline constexpr int kAnswerings = 3;

/// The sign that a call bears in whatever it sends, by which its answer is known: nine digits, so
/// that it may stand where a text, a name in an address or a number is asked for. It also tells the
/// server what to do.
struct Mark {
  int thread = 0;   ///< 0 to 9
  int session = 0;  ///< of the thread, 0 to 9
  Mishap mishap = Mishap::kNone;
  Answering answering = Answering::kAddress;
  int count = 0;  ///< of the session's calls; its last four digits count

  std::string text() const;
  friend bool operator==(const Mark&, const Mark&) = default;
};

/// The marks in a text, in their order.
std::vector<Mark> marks_in(std::string_view text);

/// The text with a "#" in the place of each mark.
std::string without_marks(std::string_view text);

}  // namespace bvconn::test
