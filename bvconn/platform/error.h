#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/outcome.h"

namespace bvconn {

/// The one error type of the library. Every operation either returns or throws it.
///
/// Callers decide by `number` (see error_numbers.h); `source` names the object that failed,
/// `description` is for people: what failed, on what, and what the other side said. `outcome` tells
/// whether the server may have acted on the request: every error that leaves an operation has one.
class BVCONN_EXPORT Error : public std::exception {
 public:
  Error(std::int32_t error_number, std::string_view error_source,
        std::string_view error_description, std::string_view help_file = {},
        std::int32_t help_context = 0);
  Error(const Error&) = default;
  Error(Error&&) noexcept = default;
  Error& operator=(const Error&) = default;
  Error& operator=(Error&&) noexcept = default;
  ~Error() override;

  /// The same number, source and outcome, with this description and without help: what most tails
  /// raise.
  Error described_as(std::string_view other_description) const;

  /// The description, as the standard library's handlers expect it.
  const char* what() const noexcept override;

  std::int32_t number = 0;
  std::string source;
  std::string description;
  std::string helpFile;
  std::int32_t helpContext = 0;
  Outcome outcome = Outcome::kNone;
};

/// "0x80044201": the form in which error numbers are written for people.
BVCONN_EXPORT std::string hex_number(std::int32_t number);

}  // namespace bvconn
