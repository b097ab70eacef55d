#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace bvconn::sandbox {

/// What goes wrong.
enum class Misconduct : std::uint8_t {
  kSoapFault,
  kDalError,
  kStatus,
  kDelay,
  kDrip,
  kClose,
  kCloseInBody,
  kReset,
  kWrongLength,
  kBadChunk,
  kGzip,
  kCutGzip,
  kWrongCharset,
  kCutXml,
  kMalformedXml,
  kEmptyBody,
  kBigBody,
  kMultiRef,
  kOtherAnswer,
};

/// Misbehaviour that was asked for: which requests it hits, how often, and what it does to them. A
/// field that nobody gave is empty; that leaves a criterion open, and a value at its default.
struct FaultRule {
  std::optional<std::string> name;  ///< its own; the book gives one where there is none
  Misconduct kind = Misconduct::kDelay;
  // Which requests.
  std::optional<std::string> operation, route, session, header;
  // How often.
  std::optional<std::int64_t> skip, count, seed;
  std::optional<double> probability;
  // What happens.
  std::optional<std::int64_t> delay_ms, every_ms, status, bytes, after_bytes, by, number;
  std::optional<std::string> code, text, detail, source, page, charset;
  std::optional<bool> run;
};

/// What a fault may be asked to do.
struct FaultKind {
  Misconduct kind;
  std::string_view name;
  std::string_view summary;
  /// The names of the fields that it takes beside those that all take, with blanks in between.
  std::string_view fields;
  /// Whether the sandbox does what the request asks, if the rule does not say so itself: where the
  /// answer is damaged, not where another one takes its place.
  bool runs;
};

/// One field of a rule, as its name is in JSON and TOML; as an option the "_" is a "-".
struct FaultField {
  using Member = std::variant<std::optional<std::string> FaultRule::*,
                              std::optional<std::int64_t> FaultRule::*,
                              std::optional<double> FaultRule::*, std::optional<bool> FaultRule::*>;

  std::string_view name;
  Member member;
  std::string_view summary;
  std::int64_t least = 0;
  std::int64_t most = 0;
  /// Whether all kinds take it.
  bool is_common = false;
};

std::span<const FaultKind> fault_kinds();
std::span<const FaultField> fault_fields();

const FaultKind& kind_of(Misconduct kind);
bool takes(const FaultKind& kind, const FaultField& field);

}  // namespace bvconn::sandbox
