#include "mask_secrets.h"

#include <algorithm>
#include <cstddef>

#include "bvconn/platform/conversions/conversions.h"

namespace bvconn::tool {
namespace {

enum class TokenKind { kText, kStart, kEmpty, kEnd, kOther };

struct Token {
  TokenKind kind = TokenKind::kOther;
  std::string_view raw;
  std::string_view local;  ///< of a tag: its name without the prefix
};

/// A request cut into tags and texts, so loosely that what is not well-formed is cut too: requests
/// that are built as text may be anything.
class Tokens {
 public:
  explicit Tokens(std::string_view text) : rest_(text) {}

  bool next(Token& token) {
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

 private:
  std::string_view take(std::size_t size) {
    const std::string_view taken = rest_.substr(0, size);
    rest_.remove_prefix(taken.size());
    return taken;
  }
  std::string_view take_through(std::string_view end) {
    const std::size_t at = rest_.find(end);
    return take(at == std::string_view::npos ? rest_.size() : at + end.size());
  }
  void take_tag(Token& token) {
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

  std::string_view rest_;
};

bool names_password(std::string_view name) {
  const std::string upper = conversions::upper_case(name);
  return upper.find("PASSWORD") != std::string::npos || upper.find("PWD") != std::string::npos;
}

/// The method element's name, and what of it is secret.
struct Plan {
  bool everything = false;
  bool by_name = false;
  bool second = false;
};

Plan plan_for(std::string_view request) {
  Tokens tokens(request);
  Token token;
  while (tokens.next(token)) {
    if (token.kind == TokenKind::kStart && token.local == "Body") break;
  }
  while (tokens.next(token) && token.kind != TokenKind::kStart) {
  }
  Plan plan;
  plan.everything = conversions::equal_ignoring_case(token.local, "updatePassword");
  if (conversions::equal_ignoring_case(token.local, "login")) {
    while (tokens.next(token)) {
      plan.by_name =
          plan.by_name || (token.kind == TokenKind::kStart && names_password(token.local));
    }
    plan.second = !plan.by_name;
  }
  return plan;
}

/// Walks the method element and tells which texts are secret.
class Masker {
 public:
  explicit Masker(Plan plan) : plan_(plan) {}

  std::string mask(std::string_view request) {
    Tokens tokens(request);
    Token token;
    std::string masked;
    bool in_body = false;
    while (tokens.next(token)) {
      if (in_body) {
        track(token);
      } else if (token.kind == TokenKind::kStart && token.local == "Body") {
        in_body = true;
      }
      const bool hidden = token.kind == TokenKind::kText && secret();
      masked.append(hidden ? kMasked : token.raw);
    }
    return masked;
  }

 private:
  // Depth 1 is inside the method element, depth 2 inside one of its parameters.
  void track(const Token& token) {
    const bool opens = token.kind == TokenKind::kStart || token.kind == TokenKind::kEmpty;
    if (opens && depth_ == 1) ++parameter_;
    if (token.kind == TokenKind::kStart) {
      ++depth_;
      if (password_depth_ == 0 && names_password(token.local)) password_depth_ = depth_;
    } else if (token.kind == TokenKind::kEnd) {
      if (password_depth_ == depth_) password_depth_ = 0;
      --depth_;
    }
  }

  bool secret() const {
    if (plan_.everything) return depth_ >= 1;
    if (plan_.by_name) return password_depth_ != 0;
    return plan_.second && depth_ >= 2 && parameter_ == 2;
  }

  Plan plan_;
  int depth_ = 0;
  int parameter_ = 0;
  int password_depth_ = 0;
};

}  // namespace

std::string mask_request(std::string_view request) {
  const Plan plan = plan_for(request);
  if (!plan.everything && !plan.by_name && !plan.second) return std::string(request);
  return Masker(plan).mask(request);
}

}  // namespace bvconn::tool
