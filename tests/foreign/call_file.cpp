#include "foreign/call_file.h"

#include <utility>

#include "support/keyed_text.h"

namespace bvconn::test {
namespace {

constexpr std::string_view kStacks[] = {"php", "perl", "gsoap"};

/// "seen perl" is the key "seen" for the stack "perl".
std::pair<std::string_view, std::string_view> split_key(std::string_view key) {
  const std::size_t blank = key.find(' ');
  if (blank == std::string_view::npos) return {key, {}};
  return {key.substr(0, blank), key.substr(blank + 1)};
}

bool is_stack(std::string_view name) {
  for (const std::string_view stack : kStacks) {
    if (stack == name) return true;
  }
  return name.empty();
}

class Reader {
 public:
  CallFile read(std::string_view text) {
    for (const KeyedEntry& entry : read_keyed_text(text, file_.problems)) {
      line_ = entry.line;
      take(entry);
    }
    if (file_.cases.empty()) problem("there is no case");
    check_last_call();
    return std::move(file_);
  }

 private:
  void problem(const std::string& what) {
    file_.problems.push_back("line " + std::to_string(line_) + ": " + what);
  }

  void take(const KeyedEntry& entry) {
    if (entry.key == "call" && !file_.cases.empty()) return begin_call(entry.joined());
    if (std::string* const to = field(entry.key)) {
      *to = entry.joined();
    } else {
      problem("there is no key \"" + entry.key + "\" here");
    }
  }

  void begin_call(const std::string& words) {
    ForeignCase& last = file_.cases.back();
    if (!last.calls.empty()) check_last_call();
    ForeignCall& call = last.calls.emplace_back();
    call.line = line_;
    const std::size_t blank = words.find(' ');
    call.member = words.substr(0, blank);
    if (blank != std::string::npos) call.arguments = trimmed(words.substr(blank));
  }

  std::string* field(std::string_view whole_key) {
    const auto [key, stack] = split_key(whole_key);
    if (!is_stack(stack)) return nullptr;
    if (whole_key == "claim") {
      check_last_call();
      return &file_.cases.emplace_back().claim;
    }
    if (file_.cases.empty()) return nullptr;
    auto& last = file_.cases.back();
    if (key == "without" && !stack.empty()) return &last.without[std::string(stack)];
    if (last.calls.empty()) return nullptr;
    if (key == "seen") return &last.calls.back().seen[std::string(stack)];
    if (key == "answer") return &last.calls.back().answer[std::string(stack)];
    return nullptr;
  }

  /// Every stack that has a part in the case needs a view and an answer.
  void check_last_call() {
    if (file_.cases.empty()) return;
    const ForeignCase& last = file_.cases.back();
    if (last.calls.empty()) return problem("the case that ends here calls nothing");
    for (const std::string_view stack : kStacks) {
      const ForeignCall& call = last.calls.back();
      if (last.without.contains(stack)) continue;
      if (for_stack(call.seen, stack).empty() || for_stack(call.answer, stack).empty()) {
        problem("the call that ends here states too little for " + std::string(stack));
      }
    }
  }

  CallFile file_;
  int line_ = 0;
};

}  // namespace

std::string for_stack(const ByStack& stated, std::string_view stack) {
  const auto own = stated.find(stack);
  if (own != stated.end()) return own->second;
  const auto common = stated.find("");
  return common == stated.end() ? "" : common->second;
}

CallFile read_call_file(std::string_view text) {
  return Reader().read(text);
}

}  // namespace bvconn::test
