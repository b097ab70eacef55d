#include "bvconn/platform/error.h"

namespace bvconn {

Error::Error(std::int32_t error_number, std::string_view error_source,
             std::string_view error_description, std::string_view help_file,
             std::int32_t help_context)
    : number(error_number),
      source(error_source),
      description(error_description),
      helpFile(help_file),
      helpContext(help_context) {}

Error::~Error() = default;

Error Error::described_as(std::string_view other_description) const {
  Error error(number, source, other_description);
  error.outcome = outcome;
  return error;
}

const char* Error::what() const noexcept {
  return description.c_str();
}

std::string hex_number(std::int32_t number) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text = "0x00000000";
  auto bits = static_cast<std::uint32_t>(number);
  for (std::size_t at = text.size() - 1; bits != 0; --at, bits >>= 4U)
    text[at] = kDigits[bits & 0xFU];
  return text;
}

std::string_view outcome_text(Outcome outcome) {
  switch (outcome) {
    case Outcome::kNone:
      return "";
    case Outcome::kNotSent:
      return "not sent";
    case Outcome::kUnknown:
      return "sent, outcome unknown";
    case Outcome::kAnswered:
      return "answered";
  }
  return "";
}

}  // namespace bvconn
