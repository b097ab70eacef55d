#include "hostile/hostile_file.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <sstream>

#include "support/keyed_text.h"

namespace bvconn::test {
namespace {

using Kind = HostileStep::Kind;
using Moment = HostileStep::Moment;

std::vector<std::string> words_of(std::string_view text) {
  std::istringstream stream{std::string(text)};
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

class Reader {
 public:
  HostileFile read(std::string_view text) {
    for (const KeyedEntry& entry : read_keyed_text(text, file_.problems)) {
      line_ = entry.line;
      const std::string value = entry.joined();
      if (entry.key == "claim") {
        begin(value);
      } else if (!take(entry.key, value)) {
        problem("nothing is known of \"" + entry.key + ": " + value.substr(0, 60) + "\"");
      }
    }
    finish();
    if (file_.cases.empty()) problem("there is no case");
    return std::move(file_);
  }

 private:
  void problem(const std::string& what) {
    file_.problems.push_back("line " + std::to_string(line_) + ": " + what);
  }

  // What stands ahead of the first claim holds for every case that does not tell otherwise.
  void begin(const std::string& claim) {
    finish();
    case_ = head_;
    case_.claim = claim;
    case_.line = line_;
    in_case_ = true;
    framing_ = {};
    moment_ = Moment::kAsked;
  }

  void finish() {
    if (!in_case_) return;
    const bool is_bad_as_it_is = case_.server == "none" || case_.server == "full" ||
                                 case_.server.starts_with("tls ") || !case_.url.empty() ||
                                 case_.through == "no proxy" || case_.through.starts_with("port ");
    if (case_.steps.empty() && !is_bad_as_it_is) {
      problem("the server of \"" + case_.claim + "\" does nothing");
    }
    for (const std::string& route : case_.routes) {
      const Expected& expected = case_.expected[route];
      const bool returns = expected.value || expected.size || expected.nodes ||
                           expected.unreadable || expected.recorded;
      if (returns == expected.raises.has_value()) {
        problem("\"" + case_.claim + "\" by " + route + " tells no outcome, or two");
      }
    }
    file_.cases.push_back(std::move(case_));
    in_case_ = false;
  }

  HostileCase& here() { return in_case_ ? case_ : head_; }

  bool take(const std::string& key, const std::string& value) {
    return take_world(key, value) ||
           (in_case_ &&
            (take_server(key, value) || take_frame(key, value) || take_expected(key, value)));
  }

  bool take_world(const std::string& key, const std::string& value) {
    HostileCase& to = here();
    if (key == "routes") {
      to.routes = words_of(value);
    } else if (key == "server") {
      to.server = value;
    } else if (key == "through") {
      to.through = value;
    } else if (key == "url") {
      to.url = value;
    } else if (key == "call") {
      to.call = value;
    } else if (key == "on") {
      to.on = static_cast<int>(number(value));
    } else if (key == "kept") {
      to.kept = value == "yes";
    } else if (key == "timeout") {
      to.timeout_ms = static_cast<std::int32_t>(number(value));
    } else if (key == "option") {
      const std::size_t equals = value.find('=');
      if (equals == std::string::npos) return false;
      to.options.emplace_back(trimmed(value.substr(0, equals)), trimmed(value.substr(equals + 1)));
    } else if (key == "within") {
      to.within = std::chrono::milliseconds(number(value));
    } else if (key == "memory") {
      to.memory_mib = static_cast<std::size_t>(number(value));
    } else {
      return false;
    }
    return true;
  }

  bool take_server(const std::string& key, const std::string& value) {
    static const std::map<std::string, Kind> kinds{
        {"reply", Kind::kReply}, {"body", Kind::kBody},   {"raw", Kind::kRaw},
        {"send", Kind::kSend},   {"below", Kind::kBelow}, {"repeat", Kind::kRepeat},
        {"then", Kind::kThen},
    };
    static const std::map<std::string, Moment> moments{
        {"accepted", Moment::kAccepted}, {"tunnel", Moment::kTunnel}, {"asked", Moment::kAsked}};
    if (const auto kind = kinds.find(key); kind != kinds.end()) {
      case_.steps.push_back({moment_, kind->second, value, std::move(framing_)});
      framing_ = {};
      return true;
    }
    const auto moment = moments.find(value);
    if (key != "when" || moment == moments.end()) return false;
    moment_ = moment->second;
    return true;
  }

  bool take_frame(const std::string& key, const std::string& value) {
    if (key == "http") {
      framing_.status = value;
    } else if (key == "type") {
      framing_.type = value;
    } else if (key == "head") {
      framing_.head.push_back(value);
    } else if (key == "as") {
      framing_.as.push_back(value);
    } else if (key == "length") {
      framing_.length = value;
    } else {
      return false;
    }
    return true;
  }

  // Of both routes, or of the one that stands in front of the key.
  bool take_expected(const std::string& key, const std::string& value) {
    const std::size_t blank = key.find(' ');
    bool known = true;
    for (const std::string& route : case_.routes) {
      if (blank == std::string::npos) {
        known = known && expect(case_.expected[route], key, value);
      } else if (key.substr(0, blank) == route) {
        return expect(case_.expected[route], key.substr(blank + 1), value);
      }
    }
    return known && blank == std::string::npos;
  }

  bool expect(Expected& expected, const std::string& key, const std::string& value) {
    if (key == "value") {
      expected.value = value;
    } else if (key == "size") {
      expected.size = static_cast<std::size_t>(number(value));
    } else if (key == "nodes") {
      expected.nodes = static_cast<std::size_t>(number(value));
    } else if (key == "unreadable") {
      expected.unreadable = error_number(value);
    } else if (key == "raises") {
      expected.raises = error_number(value);
    } else if (key == "recorded") {
      expected.recorded = error_number(value);
    } else if (key == "words") {
      expected.words = value;
    } else if (key == "says") {
      expected.says.push_back(value);
    } else if (key == "silent") {
      expected.silent.push_back(value);
    } else if (key == "source") {
      expected.source = value;
    } else if (key == "outcome") {
      expected.outcome = value;
    } else if (key == "status") {
      expected.status = static_cast<std::int32_t>(number(value));
    } else if (key == "sends") {
      expected.sends.push_back(value);
    } else if (key == "omits") {
      expected.sends_not.push_back(value);
    } else {
      return false;
    }
    return true;
  }

  std::int64_t number(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (code != std::errc() || end != text.data() + text.size()) {
      problem("a number is expected, not \"" + std::string(text) + "\"");
    }
    return number;
  }

  std::int32_t error_number(const std::string& text) {
    if (!text.starts_with("0x")) return static_cast<std::int32_t>(number(text));
    std::uint32_t bits = 0;
    const auto [end, code] = std::from_chars(text.data() + 2, text.data() + text.size(), bits, 16);
    if (code != std::errc() || end != text.data() + text.size()) {
      problem("an error number is expected, not \"" + text + "\"");
    }
    return static_cast<std::int32_t>(bits);
  }

  HostileFile file_;
  HostileCase head_;
  HostileCase case_;
  bool in_case_ = false;
  Framing framing_;
  Moment moment_ = Moment::kAsked;
  int line_ = 0;
};

}  // namespace

HostileFile read_hostile_file(std::string_view text) {
  return Reader().read(text);
}

}  // namespace bvconn::test
