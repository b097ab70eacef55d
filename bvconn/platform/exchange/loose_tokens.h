#pragma once

#include <cstdint>
#include <string_view>

#include "bvconn/platform/export.h"

namespace bvconn::detail {

enum class TokenKind : std::uint8_t { kText, kStart, kEmpty, kEnd, kOther };

struct Token {
  TokenKind kind = TokenKind::kOther;
  std::string_view raw{};
  std::string_view local{};  ///< of a tag: its name without the prefix
};

/// XML cut into tags and texts, so loosely that what is not well-formed is cut too: requests that
/// are built as text may be anything, and a record may hold the beginning of one alone.
class BVCONN_EXPORT LooseTokens {
 public:
  explicit LooseTokens(std::string_view text) : rest_(text) {}

  bool next(Token& token);

 private:
  std::string_view take(std::size_t size);
  std::string_view take_through(std::string_view end);
  void take_tag(Token& token);

  std::string_view rest_;
};

}  // namespace bvconn::detail
