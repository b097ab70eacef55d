#include "foreign/call_file.h"

#include <utility>

namespace bvconn::test {
namespace {

constexpr std::string_view kStacks[] = {"php", "perl", "gsoap"};

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

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
    while (!text.empty()) {
      const std::size_t end = text.find('\n');
      ++line_;
      take(text.substr(0, end));
      text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    if (file_.cases.empty()) problem("there is no case");
    check_last_call();
    return std::move(file_);
  }

 private:
  void problem(const std::string& what) {
    file_.problems.push_back("line " + std::to_string(line_) + ": " + what);
  }

  void take(std::string_view line) {
    if (trimmed(line).empty() || line.front() == '#') return;
    if (line.front() == ' ') {
      if (value_ == nullptr) return problem("nothing goes on here");
      value_->append(trimmed(line));
      return;
    }
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) return problem("a key and a colon are expected");
    value_ = field(line.substr(0, colon));
    if (value_ == nullptr) return problem("there is no such key here");
    const std::string_view rest = trimmed(line.substr(colon + 1));
    if (value_ == &member_and_arguments()) return begin_call(rest);
    value_->append(rest);
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
    if (whole_key == "call") {
      if (!last.calls.empty()) check_last_call();
      last.calls.emplace_back().line = line_;
      return &member_and_arguments();
    }
    if (last.calls.empty()) return nullptr;
    if (key == "seen") return &last.calls.back().seen[std::string(stack)];
    if (key == "answer") return &last.calls.back().answer[std::string(stack)];
    return nullptr;
  }

  std::string& member_and_arguments() {
    static std::string none;
    if (file_.cases.empty() || file_.cases.back().calls.empty()) return none;
    return file_.cases.back().calls.back().arguments;
  }

  void begin_call(std::string_view words) {
    const std::size_t blank = words.find(' ');
    file_.cases.back().calls.back().member = words.substr(0, blank);
    if (blank != std::string_view::npos) value_->append(trimmed(words.substr(blank)));
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
  std::string* value_ = nullptr;  ///< what a line that is indented goes on with
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
