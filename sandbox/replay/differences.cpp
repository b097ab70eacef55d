#include "sandbox/replay/differences.h"

#include <algorithm>
#include <cstddef>

#include "bvconn/platform/exchange/mask_request.h"
#include "sandbox/contract/words.h"

namespace bvconn::sandbox {
namespace {

bool begins_character(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
}

/// What people have to see of a text that differs from another from `at` on.
std::string excerpt(std::string_view text, std::size_t at) {
  constexpr std::size_t kBefore = 16;
  constexpr std::size_t kMost = 60;
  std::size_t begin = at > kBefore * 2 ? at - kBefore : 0;
  while (begin > 0 && begin < text.size() && !begins_character(text[begin])) --begin;
  std::size_t end = std::min(text.size(), begin + kMost);
  while (end < text.size() && end > begin && !begins_character(text[end])) --end;
  std::string shown(begin > 0 ? "…" : "");
  shown.append(text.substr(begin, end - begin));
  return in_quotes(shown.append(end < text.size() ? "…" : ""));
}

std::string argument_difference(const AskedRequest::Argument& recorded, std::string_view text) {
  const auto differs =
      std::mismatch(recorded.text.begin(), recorded.text.end(), text.begin(), text.end());
  const auto at = static_cast<std::size_t>(differs.first - recorded.text.begin());
  return recorded.name + " is " + excerpt(recorded.text, at) + " there, " + excerpt(text, at) +
         " here";
}

std::string_view words_of(Route route) {
  return route == Route::kDal ? " by the data access layer" : " by SOAP";
}

}  // namespace

bool stands_for(std::string_view recorded, std::string_view text) {
  std::size_t mask = recorded.find(kMasked);
  if (mask == std::string_view::npos) return recorded == text;
  if (!text.starts_with(recorded.substr(0, mask))) return false;
  text.remove_prefix(mask);
  while (true) {
    recorded.remove_prefix(mask + kMasked.size());
    mask = recorded.find(kMasked);
    if (mask == std::string_view::npos) return text.ends_with(recorded);
    // The first place is as good as any: what follows may begin right behind it.
    const std::size_t found = text.find(recorded.substr(0, mask));
    if (found == std::string_view::npos) return false;
    text.remove_prefix(found + mask);
  }
}

bool is_same_operation(const AskedRequest& recorded, const AskedRequest& asked) {
  if (recorded.route != asked.route || recorded.service != asked.service ||
      recorded.method != asked.method) {
    return false;
  }
  const auto& others = recorded.operations;
  if (asked.operations.empty() || others.empty()) return asked.operations.empty() == others.empty();
  return std::any_of(asked.operations.begin(), asked.operations.end(),
                     [&](const std::string& name) {
                       return std::find(others.begin(), others.end(), name) != others.end();
                     });
}

bool stands_for(const AskedRequest& recorded, const AskedRequest& asked) {
  return is_same_operation(recorded, asked) &&
         std::equal(recorded.arguments.begin(), recorded.arguments.end(), asked.arguments.begin(),
                    asked.arguments.end(), [](const auto& there, const auto& here) {
                      return stands_for(there.text, here.text);
                    });
}

std::vector<std::string> differences(const AskedRequest& recorded, const AskedRequest& asked) {
  if (!is_same_operation(recorded, asked)) {
    std::string other = "it is " + recorded.title();
    if (recorded.route != asked.route) other.append(words_of(recorded.route));
    return {other};
  }
  std::vector<std::string> all;
  const std::size_t both = std::min(recorded.arguments.size(), asked.arguments.size());
  for (std::size_t i = 0; i < both; ++i) {
    if (stands_for(recorded.arguments[i].text, asked.arguments[i].text)) continue;
    all.push_back(argument_difference(recorded.arguments[i], asked.arguments[i].text));
  }
  if (recorded.arguments.size() != asked.arguments.size()) {
    all.push_back("it has " + counted(recorded.arguments.size(), "argument") + " there, " +
                  std::to_string(asked.arguments.size()) + " here");
  }
  return all;
}

}  // namespace bvconn::sandbox
