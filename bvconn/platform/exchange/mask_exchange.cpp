#include "bvconn/platform/exchange/mask_exchange.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/exchange/mask_request.h"

namespace bvconn {
namespace {

using conversions::equal_ignoring_case;
using detail::EnvelopeMask;

// What is shorter stands in too many texts by chance.
constexpr std::size_t kFoundAgainMin = 4;

constexpr std::pair<char, std::string_view> kEntities[] = {
    {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&apos;"}};

void replace_all(std::string& text, std::string_view what, std::string_view with) {
  for (std::size_t at = text.find(what); at != std::string::npos;
       at = text.find(what, at + with.size())) {
    text.replace(at, what.size(), with);
  }
}

std::string escaped(std::string text) {
  for (const auto& [c, entity] : kEntities) replace_all(text, {&c, 1}, entity);
  return text;
}

std::string unescaped(std::string_view raw) {
  constexpr std::string_view kCdata = "<![CDATA[";
  if (raw.starts_with(kCdata)) {
    raw.remove_prefix(kCdata.size());
    return std::string(raw.substr(0, raw.find("]]>")));
  }
  std::string text(raw);
  for (auto entity = std::rbegin(kEntities); entity != std::rend(kEntities); ++entity) {
    replace_all(text, entity->second, {&entity->first, 1});
  }
  return text;
}

/// The secrets of one exchange: found where they have their place, hidden wherever else they stand.
class Secret {
 public:
  void add(std::string_view text) {
    // What stood in CDATA may come back escaped.
    const std::string plain = unescaped(text);
    for (std::string form :
         {std::string(text), escaped(std::string(text)), plain, escaped(plain)}) {
      if (form.size() >= kFoundAgainMin && std::ranges::find(forms_, form) == forms_.end()) {
        forms_.push_back(std::move(form));
      }
    }
    // Longer ones first: one may be part of another.
    std::ranges::sort(forms_, std::ranges::greater(), &std::string::size);
  }

  void hide_in(std::string& text) const {
    for (const std::string& form : forms_) replace_all(text, form, kMasked);
  }
  // A text that was cut may end in the beginning of one.
  void hide_in(BoundedText& text) const {
    hide_in(text.text);
    if (!text.cut()) return;
    for (const std::string& form : forms_) {
      for (std::size_t size = form.size() - 1; size >= kFoundAgainMin; --size) {
        if (!text.text.ends_with(std::string_view(form).substr(0, size))) continue;
        text.text.replace(text.text.size() - size, size, kMasked);
        break;
      }
    }
  }

 private:
  std::vector<std::string> forms_;
};

// The password of an address. Its user's name is hidden in its place alone, since it may be a word
// of any text.
std::string_view password_of(std::string_view url) {
  constexpr std::string_view kBegin = "://";
  const std::size_t begin = url.find(kBegin);
  if (begin == std::string_view::npos) return {};
  url.remove_prefix(begin + kBegin.size());
  const std::string_view user_info = url.substr(0, detail::user_info_size(url));
  const std::size_t colon = user_info.find(':');
  return colon == std::string_view::npos ? std::string_view() : user_info.substr(colon + 1);
}

// User and password of every URL in the text.
void hide_user_info(std::string& text) {
  constexpr std::string_view kBegin = "://";
  for (std::size_t at = text.find(kBegin); at != std::string::npos; at = text.find(kBegin, at)) {
    at += kBegin.size();
    const std::size_t end = std::min(text.find_first_of("\"'<> \t\r\n", at), text.size());
    const std::size_t secret = detail::user_info_size(std::string_view(text).substr(at, end - at));
    if (secret > 0) text.replace(at, secret, kMasked);
  }
}

bool is_secret_header(std::string_view name) {
  constexpr std::string_view kNames[] = {"Session-Token", "Authorization", "Proxy-Authorization",
                                         "Set-Cookie", "Cookie"};
  return std::ranges::any_of(
      kNames, [&](std::string_view each) { return equal_ignoring_case(each, name); });
}

void hide_headers(std::string& headers, Secret& secrets) {
  std::string masked;
  for (std::string_view rest = headers; !rest.empty();) {
    const std::size_t end = std::min(rest.find('\n'), rest.size() - 1) + 1;
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end);
    const std::size_t colon = std::min(line.find(':'), line.size());
    if (!is_secret_header(line.substr(0, colon))) {
      masked.append(line);
      continue;
    }
    const std::size_t value = std::min(line.find_first_not_of(": \t", colon), line.size());
    const std::size_t value_end = std::min(line.find_first_of("\r\n", value), line.size());
    secrets.add(line.substr(value, value_end - value));
    masked.append(line.substr(0, value)).append(kMasked).append(line.substr(value_end));
  }
  headers = std::move(masked);
}

void hide_in_envelope(BoundedText& text, EnvelopeMask mask, Secret& secrets) {
  std::vector<std::string> hidden;
  text.text = detail::mask_envelope(text.text, mask, hidden);
  for (const std::string& each : hidden) secrets.add(each);
}

void hide_login(Exchange& exchange, Secret& secrets) {
  constexpr std::size_t kPassword = 1;
  if (exchange.arguments.size() > kPassword) {
    BoundedText& password = exchange.arguments[kPassword].text;
    secrets.add(password.text);
    password.assign(kMasked);
  }
  for (BoundedText* text : {&exchange.result, &exchange.reply}) {
    // An answer that is refused has words for people; the other is what the server knows the
    // client by.
    if (!exchange.error && !text->text.empty()) text->text = kMasked;
  }
}

std::vector<BoundedText*> texts_of(Exchange& exchange) {
  std::vector<BoundedText*> texts{&exchange.request, &exchange.reply_headers, &exchange.reply,
                                  &exchange.result};
  for (ExchangeArgument& argument : exchange.arguments) texts.push_back(&argument.text);
  return texts;
}

}  // namespace

void mask_exchange(Exchange& exchange, std::string_view session_id) {
  Secret secrets;
  secrets.add(session_id);
  secrets.add(password_of(exchange.url));
  const bool logs_in = equal_ignoring_case(detail::body_element(exchange.request.text), "login") &&
                       detail::body_element(exchange.reply.text) != "Fault";
  if (exchange.route == ExchangeRoute::kDal && exchange.object_operation == "Login") {
    hide_login(exchange, secrets);
  }
  hide_headers(exchange.reply_headers.text, secrets);
  for (BoundedText* text : texts_of(exchange)) {
    const bool is_answer = text == &exchange.reply && logs_in;
    hide_in_envelope(*text, is_answer ? EnvelopeMask::kWholeBody : EnvelopeMask::kAllSecrets,
                     secrets);
  }
  for (BoundedText* text : texts_of(exchange)) {
    secrets.hide_in(*text);
    hide_user_info(text->text);
  }
  std::vector<std::string*> lines{&exchange.url};
  if (exchange.soap_action) lines.push_back(&*exchange.soap_action);
  if (exchange.error) lines.push_back(&exchange.error->description);
  for (std::string* line : lines) {
    secrets.hide_in(*line);
    hide_user_info(*line);
  }
}

}  // namespace bvconn
