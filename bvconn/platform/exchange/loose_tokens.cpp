#include "bvconn/platform/exchange/loose_tokens.h"

#include <algorithm>
#include <string>

#include "bvconn/platform/conversions/conversions.h"

namespace bvconn::detail {

bool LooseTokens::next(Token& token) {
  if (rest_.empty()) return false;
  token = {};
  if (rest_.front() != '<') {
    token.kind = TokenKind::kText;
    token.raw = take(std::min(rest_.find('<'), rest_.size()));
  } else if (rest_.starts_with("<![CDATA[")) {
    token.kind = TokenKind::kText;
    token.raw = take_through("]]>");
  } else if (rest_.starts_with("<!--")) {
    token.raw = take_through("-->");
  } else if (rest_.starts_with("<?")) {
    token.raw = take_through("?>");
  } else {
    take_tag(token);
  }
  return true;
}

std::string_view LooseTokens::take(std::size_t size) {
  const std::string_view taken = rest_.substr(0, size);
  rest_.remove_prefix(taken.size());
  return taken;
}

std::string_view LooseTokens::take_through(std::string_view end) {
  const std::size_t at = rest_.find(end);
  return take(at == std::string_view::npos ? rest_.size() : at + end.size());
}

void LooseTokens::take_tag(Token& token) {
  char quote = 0;
  std::size_t at = 1;
  for (; at < rest_.size(); ++at) {
    const char c = rest_[at];
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '>') {
      break;
    }
  }
  token.raw = take(at + 1);
  const bool closes = token.raw.starts_with("</");
  token.kind = closes                      ? TokenKind::kEnd
               : token.raw.ends_with("/>") ? TokenKind::kEmpty
                                           : TokenKind::kStart;
  std::string_view name = token.raw.substr(closes ? 2 : 1);
  name = name.substr(0, name.find_first_of(" \t\r\n/>"));
  const std::size_t colon = name.find(':');
  token.local = colon == std::string_view::npos ? name : name.substr(colon + 1);
}

}  // namespace bvconn::detail
