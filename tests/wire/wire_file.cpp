#include "wire_file.h"

#include <functional>
#include <map>
#include <utility>

#include "support/keyed_text.h"

namespace bvconn::test {
namespace {

class Reader {
 public:
  WireFile read(std::string_view text) {
    for (const KeyedEntry& entry : read_keyed_text(text, file_.problems)) {
      line_ = entry.line;
      key_ = entry.key;
      begin();
      for (const std::string& one : entry.values) value(one);
    }
    if (file_.cases.empty()) problem("there is no case");
    if (!given_.empty()) problem("no call follows what is given");
    return std::move(file_);
  }

 private:
  void problem(const std::string& what) {
    file_.problems.push_back("line " + std::to_string(line_) + ": " + what);
  }

  // What a key starts even before it has a value.
  void begin() {
    if (key_ == "claim") {
      if (!given_.empty()) problem("no call follows what is given");
      given_.clear();
      file_.cases.emplace_back();
    } else if (file_.cases.empty()) {
      if (!is_head()) problem("a claim comes before \"" + key_ + "\"");
    } else if (key_ == "call") {
      WireStep& step = file_.cases.back().steps.emplace_back();
      step.line = line_;
      step.given = std::exchange(given_, {});
    } else if (auto* text = text_field()) {
      *text = "";
    }
  }

  // The keys in front of the first claim say what the laws have to know of the operation.
  bool is_head() const {
    return key_ == "tail" || key_ == "returns" || key_ == "disabled by" || key_ == "not";
  }

  void head(std::string_view value) {
    if (key_ == "tail") {
      file_.tail = value;
    } else if (key_ == "disabled by") {
      file_.disabled_by = value;
    } else if (key_ == "not") {
      file_.exceptions.emplace_back(value);
    } else if (key_ == "returns" && value == "text") {
      file_.returns_text = true;
    } else if (is_head()) {
      problem("nothing is known of \"" + std::string(value) + "\"");
    }
  }

  std::optional<std::string>* text_field() {
    if (file_.cases.back().steps.empty()) return nullptr;
    WireStep& step = file_.cases.back().steps.back();
    const std::map<std::string_view, std::optional<std::string>*> fields{
        {"send", &step.url},       {"action", &step.soap_action}, {"timeout", &step.timeout},
        {"userID", &step.user_id}, {"request", &step.request},    {"text", &step.text},
        {"reply", &step.reply},    {"fault", &step.fault},        {"raw", &step.raw},
        {"broken", &step.broken},  {"answer", &step.answer},
    };
    const auto found = fields.find(key_);
    return found == fields.end() ? nullptr : found->second;
  }

  std::vector<std::string>* list_field() {
    if (key_ == "given") return &given_;
    if (file_.cases.back().steps.empty()) return nullptr;
    WireStep& step = file_.cases.back().steps.back();
    if (key_ == "transport") return &step.transport;
    if (key_ == "dal") return &step.dal;
    if (key_ == "log") return &step.log;
    if (key_ == "logfile") return &step.log_file;
    if (key_ == "after") return &step.after;
    return nullptr;
  }

  void value(std::string_view value) {
    if (file_.cases.empty()) return head(value);
    if (key_ == "claim") {
      file_.cases.back().claim.append(value);
    } else if (key_ == "call") {
      call(value);
    } else if (auto* text = text_field()) {
      text->value().append(value);
    } else if (auto* list = list_field()) {
      list->emplace_back(value);
    } else {
      problem("there is no key \"" + key_ + "\" here");
    }
  }

  void call(std::string_view value) {
    WireStep& step = file_.cases.back().steps.back();
    if (step.member.empty()) {
      const std::size_t blank = value.find(' ');
      step.member = value.substr(0, blank);
      if (blank == std::string_view::npos) return;
      value.remove_prefix(blank + 1);
    }
    step.arguments.append(value);
  }

  WireFile file_;
  std::string key_;
  std::vector<std::string> given_;  ///< until the call that it is for
  int line_ = 0;
};

}  // namespace

WireFile read_wire_file(std::string_view text) {
  return Reader().read(text);
}

}  // namespace bvconn::test
