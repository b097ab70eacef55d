#include "bvconn/platform/exchange/mask_request.h"

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/exchange/loose_tokens.h"

namespace bvconn {

bool names_password(std::string_view name) {
  const std::string upper = conversions::upper_case(name);
  return upper.find("PASS") != std::string::npos || upper.find("PWD") != std::string::npos;
}

namespace detail {
namespace {

// Leaves `tokens` behind the start of the Body's first element.
Token first_of_body(LooseTokens& tokens) {
  Token token;
  while (tokens.next(token)) {
    if (token.kind == TokenKind::kStart && token.local == "Body") break;
  }
  while (tokens.next(token)) {
    if (token.kind == TokenKind::kStart) return token;
  }
  return {};
}

/// What of a method element is secret.
struct Plan {
  bool everything = false;
  bool by_name = false;
  bool second = false;
};

Plan plan_for(std::string_view text, EnvelopeMask mask) {
  LooseTokens tokens(text);
  const Token method = first_of_body(tokens);
  Plan plan{.everything = mask == EnvelopeMask::kWholeBody ||
                          conversions::equal_ignoring_case(method.local, "updatePassword"),
            .by_name = mask == EnvelopeMask::kAllSecrets};
  // By place and by name: servers call the element what they like, and take the two in any order.
  if (conversions::equal_ignoring_case(method.local, "login")) plan.by_name = plan.second = true;
  return plan;
}

/// Walks an envelope and tells which texts are secret.
class Masker {
 public:
  Masker(Plan plan, bool hides_user_id) : plan_(plan), hides_user_id_(hides_user_id) {}

  std::string mask(std::string_view text, std::vector<std::string>& hidden) {
    LooseTokens tokens(text);
    Token token;
    std::string masked;
    while (tokens.next(token)) {
      if (in_body_) {
        track_body(token);
      } else {
        track_header(token);
      }
      if (token.kind == TokenKind::kText && secret()) {
        hidden.emplace_back(token.raw);
        masked.append(kMasked);
      } else {
        masked.append(token.raw);
      }
    }
    return masked;
  }

 private:
  void track_header(const Token& token) {
    if (token.local == "userID") in_user_id_ = token.kind == TokenKind::kStart;
    in_body_ = token.kind == TokenKind::kStart && token.local == "Body";
  }

  // Depth 1 is inside the method element, depth 2 inside one of its parameters.
  void track_body(const Token& token) {
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
    if (!in_body_) return hides_user_id_ && in_user_id_;
    if (plan_.everything) return depth_ >= 1;
    if (plan_.by_name && password_depth_ != 0) return true;
    return plan_.second && depth_ >= 2 && parameter_ == 2;
  }

  Plan plan_;
  bool hides_user_id_;
  bool in_user_id_ = false;
  bool in_body_ = false;
  int depth_ = 0;
  int parameter_ = 0;
  int password_depth_ = 0;
};

/// Whether what seems to be host and port cannot be, so that a password went on behind it.
bool is_cut_password(std::string_view authority) {
  const std::size_t colon = authority.rfind(':');
  if (colon == std::string_view::npos) return false;
  const std::string_view port = authority.substr(colon + 1);
  return port.find(']') == std::string_view::npos &&
         port.find_first_not_of("0123456789") != std::string_view::npos;
}

}  // namespace

std::size_t user_info_size(std::string_view rest) {
  const std::string_view authority = rest.substr(0, rest.find_first_of("/?#"));
  std::size_t at = authority.rfind('@');
  if (at == std::string_view::npos && is_cut_password(authority)) at = rest.rfind('@');
  return at == std::string_view::npos ? 0 : at;
}

std::string mask_envelope(std::string_view text, EnvelopeMask mask,
                          std::vector<std::string>& hidden) {
  return Masker(plan_for(text, mask), mask != EnvelopeMask::kPasswords).mask(text, hidden);
}

std::string_view body_element(std::string_view text) {
  LooseTokens tokens(text);
  return first_of_body(tokens).local;
}

}  // namespace detail

std::string mask_request(std::string_view request) {
  std::vector<std::string> hidden;
  return detail::mask_envelope(request, detail::EnvelopeMask::kPasswords, hidden);
}

}  // namespace bvconn
