#include "text_mask.h"

#include <algorithm>
#include <array>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/exchange/loose_tokens.h"
#include "bvconn/platform/exchange/mask_request.h"
#include "mask_urls.h"

namespace bvconn::tool {
namespace {

using detail::LooseTokens;
using detail::Token;
using detail::TokenKind;

constexpr std::size_t kFoundAgainMin = 4;
/// A value in running text may be a common word: "password: wrong".
constexpr std::size_t kValueFoundAgainMin = 6;
constexpr std::string_view kWord =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-";
constexpr std::string_view kBlanks = " \t";

std::string replaced(std::string text, std::string_view what, std::string_view with) {
  for (std::size_t at = text.find(what); at != std::string::npos;
       at = text.find(what, at + with.size())) {
    text.replace(at, what.size(), with);
  }
  return text;
}

/// The secret as XML or JSON would write it.
std::string escaped_for_xml(std::string text) {
  text = replaced(std::move(text), "&", "&amp;");
  text = replaced(std::move(text), "<", "&lt;");
  return replaced(std::move(text), ">", "&gt;");
}

std::string unescaped_from_xml(std::string text) {
  text = replaced(std::move(text), "&lt;", "<");
  text = replaced(std::move(text), "&gt;", ">");
  return replaced(std::move(text), "&amp;", "&");
}

std::string escaped_for_json(std::string text) {
  text = replaced(std::move(text), "\\", "\\\\");
  return replaced(std::move(text), "\"", "\\\"");
}

/// Headers whose whole line is secret: "Authorization: Bearer TOKEN".
bool is_header(std::string_view name) {
  constexpr std::array<std::string_view, 5> kNames{"Authorization", "Proxy-Authorization", "Cookie",
                                                   "Set-Cookie", "Session-Token"};
  return std::ranges::any_of(
      kNames, [&](std::string_view each) { return conversions::equal_ignoring_case(each, name); });
}

std::size_t skip(std::string_view text, std::size_t at, std::string_view what) {
  return std::min(text.find_first_not_of(what, at), text.size());
}

/// The place of a value behind its name.
struct ValuePlace {
  std::size_t begin = 0;
  std::size_t size = 0;
};

/// Where the value stands that begins behind `name_end`; size 0 where there is none.
ValuePlace value_behind(std::string_view text, std::size_t name_end, bool whole_line) {
  const std::size_t sign = skip(text, name_end, " \t\"'\\");
  if (sign >= text.size() || (text[sign] != ':' && text[sign] != '=')) return {};
  std::size_t begin = skip(text, sign + 1, kBlanks);
  while (begin < text.size() && text[begin] == '\\') ++begin;
  const char quote = begin < text.size() ? text[begin] : '\0';
  const bool quoted = quote == '"' || quote == '\'';
  if (quoted) ++begin;
  const std::string_view ends = quoted       ? std::string_view(&text[begin - 1], 1)
                                : whole_line ? std::string_view("\r\n\"\\")
                                             : std::string_view(" \t\r\n,;&\"'<>)]}\\");
  std::size_t end = std::min(text.find_first_of(ends, begin), text.size());
  // A quote that is itself quoted, in JSON that holds JSON, goes with its backslash.
  while (quoted && end > begin && text[end - 1] == '\\') --end;
  return {.begin = begin, .size = end - begin};
}

}  // namespace

bool names_secret(std::string_view name) {
  const std::string upper = conversions::upper_case(name);
  constexpr std::array<std::string_view, 5> kParts{"TOKEN", "SECRET", "SESSIONID", "SESSION_ID",
                                                   "COOKIE"};
  return names_password(name) || upper == "USERID" || upper == "BVCONN_SESSION" ||
         upper.find("AUTHORIZATION") != std::string::npos ||
         std::ranges::any_of(
             kParts, [&](std::string_view part) { return upper.find(part) != std::string::npos; });
}

void TextMask::add(std::string_view secret) {
  const std::string text(secret);
  for (std::string form :
       {text, escaped_for_xml(text), unescaped_from_xml(text), escaped_for_json(text)}) {
    if (form.size() < kFoundAgainMin || form == kMasked) continue;
    if (std::ranges::find(secrets_, form) == secrets_.end()) secrets_.push_back(std::move(form));
  }
  std::ranges::sort(secrets_, std::ranges::greater(), &std::string::size);
}

std::string TextMask::mask_places(std::string_view text) {
  std::vector<std::string> hidden;
  std::string masked = detail::mask_envelope(text, detail::EnvelopeMask::kAllSecrets, hidden);
  for (const std::string& each : hidden) add(each);
  return mask_urls(mask_values(mask_elements(masked)));
}

/// Elements outside of an envelope too, as logs and descriptions hold them.
std::string TextMask::mask_elements(std::string_view text) {
  std::string masked;
  LooseTokens tokens(text);
  bool secret = false;
  for (Token token; tokens.next(token);) {
    if (token.kind == TokenKind::kText && secret) {
      add(token.raw);
      masked.append(kMasked);
    } else {
      masked.append(token.raw);
    }
    secret = token.kind == TokenKind::kStart && names_secret(token.local);
  }
  return masked;
}

std::string TextMask::mask_values(std::string_view text) {
  std::string masked;
  std::size_t done = 0;
  for (std::size_t at = text.find_first_of(kWord); at != std::string_view::npos;
       at = text.find_first_of(kWord, at)) {
    const std::size_t end = skip(text, at, kWord);
    const std::string_view name = text.substr(at, end - at);
    at = end;
    if (!names_secret(name)) continue;
    const ValuePlace place = value_behind(text, end, is_header(name));
    if (place.size == 0) continue;
    const std::string_view value = text.substr(place.begin, place.size);
    if (value.size() >= kValueFoundAgainMin) add(value);
    masked.append(text.substr(done, place.begin - done)).append(kMasked);
    done = at = place.begin + place.size;
  }
  return masked.append(text.substr(done));
}

std::string TextMask::hide(std::string text) const {
  for (const std::string& secret : secrets_) text = replaced(std::move(text), secret, kMasked);
  return text;
}

}  // namespace bvconn::tool
