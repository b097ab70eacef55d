#include "sandbox/wire/wire_file.h"

#include <algorithm>
#include <utility>

#include "sandbox/wire/keyed_text.h"
#include "sandbox/wire/stand_ins.h"
#include "sandbox/wire/wire_fields.h"

namespace bvconn::wire {
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
    } else if (const WireField* const known = field(); known != nullptr && known->text != nullptr) {
      file_.cases.back().steps.back().*(known->text) = "";
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

  // The key's field of the last step, if there is a step and such a field.
  const WireField* field() const {
    if (file_.cases.back().steps.empty()) return nullptr;
    const auto* const found = std::find_if(kWireFields.begin(), kWireFields.end(),
                                           [&](const WireField& each) { return each.key == key_; });
    return found == kWireFields.end() ? nullptr : found;
  }

  void value(std::string_view value) {
    if (file_.cases.empty()) return head(value);
    if (key_ == "claim") {
      file_.cases.back().claim.append(value);
    } else if (key_ == "call") {
      call(value);
    } else if (key_ == "given") {
      given_.emplace_back(value);
    } else if (const WireField* const known = field()) {
      add(*known, value);
    } else {
      problem("there is no key \"" + key_ + "\" here");
    }
  }

  void add(const WireField& field, std::string_view value) {
    WireStep& step = file_.cases.back().steps.back();
    if (field.lines != nullptr) {
      (step.*field.lines).emplace_back(value);
    } else if (field.takes_stand_ins) {
      (step.*field.text)->append(without_stand_ins(value));
    } else {
      (step.*field.text)->append(value);
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

}  // namespace bvconn::wire
