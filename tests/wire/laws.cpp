#include "laws.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

namespace bvconn::test {
namespace {

using Lines = std::vector<std::string>;

constexpr Law kLostConnection{"lost connection", "a lost connection ends as the tail says"};
constexpr Law kFault{"fault", "a fault ends as the tail says"};
constexpr Law kNoXml{"no XML", "an answer that is no XML is an error"};
constexpr Law kNoParameter{"no parameter", "an answer without a parameter is an error"};
constexpr Law kEmptyTexts{"empty texts", "empty texts are sent as they are"};
constexpr Law kDalOn{"DAL on", "it stays on SOAP when the data access layer is on"};
constexpr Law kSwitchedOff{"switched off", "without the switch it goes by SOAP"};
constexpr Law kDisabled{"disabled", "a disabled method goes by SOAP"};
constexpr Law kOtherEntries{"other entries", "an entry that is only like its own disables nothing"};
constexpr Law kNoObjects{"no service objects", "without service objects it fails on its route"};
constexpr Law kFailingObject{"failing service object",
                             "the error of a service object ends as the tail says"};
constexpr Law kEmptyResult{"empty result", "an empty first parameter comes back as an empty text"};
constexpr Law kNilResult{"nil result", "a nil comes back as an empty text"};
constexpr Law kTruthValue{"truth value", "a truth value comes back as its word"};
constexpr Law kPlainText{"plain text",
                         "a first parameter that is a plain text comes back as any other"};
constexpr Law kChildren{"children in the result",
                        "a first parameter with children has no text and is an error"};

constexpr Law kLaws[] = {kLostConnection, kFault,     kNoXml,         kNoParameter,
                         kEmptyTexts,     kDalOn,     kSwitchedOff,   kDisabled,
                         kOtherEntries,   kNoObjects, kFailingObject, kPlainText,
                         kEmptyResult,    kNilResult, kTruthValue,    kChildren};

/// How an operation ends after an error.
struct Tail {
  std::string_view name;
  bool logs;        ///< writes an error line, under the name that the file gives
  bool keeps_help;  ///< raises the error with its help file and help context
};
constexpr Tail kTails[] = {
    {.name = "plain", .logs = true, .keeps_help = false},
    {.name = "fault code", .logs = true, .keeps_help = false},
    {.name = "overview", .logs = true, .keeps_help = false},  // and without a description
    {.name = "swallow", .logs = true, .keeps_help = false},   // raises nothing
    {.name = "unlogged", .logs = false, .keeps_help = false},
    {.name = "fault string", .logs = false, .keeps_help = false},  // always the server's words
    {.name = "rfq", .logs = false, .keeps_help = true},  // the same, and a number of its own
    {.name = "bare", .logs = false, .keeps_help = true},
    {.name = "none", .logs = false, .keeps_help = true},
};

/// An error as it reaches the tail.
struct Failure {
  std::string number;  ///< in an answer
  std::string hex;     ///< in an answer
  std::string logged;  ///< the number in a line
  std::string source;
  std::string description;
  bool help = false;  ///< it comes with "help.chm" and 12
};

const Failure kSoapFault{"-2147204607", "0x80044201", "0x80044201", "SoapEnvelope",
                         "The reply is a SOAP fault"};
const Failure kNotWellFormed{"-2147204606", "0x80044202", "0x80044202", "SoapEnvelope", "{words}"};
const Failure kNoSuchNode{"-2147204604", "0x80044204", "0x80044204", "SoapNodes", "{words}"};
const Failure kNotSet{"91", "0x0000005B", "91", "BVConn", "{words}"};
const Failure kMismatch{"13", "0x0000000D", "13", "BVConn", "{words}"};

bool contains(const Lines& lines, std::string_view line) {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

// The end of the JSON value that begins at `at`.
std::size_t end_of_value(std::string_view json, std::size_t at) {
  int depth = 0;
  bool in_text = false;
  for (; at < json.size(); ++at) {
    const char c = json[at];
    if (in_text) {
      if (c == '\\') ++at;
      in_text = c != '"';
    } else if (c == '"') {
      in_text = true;
    } else if (c == '{' || c == '[') {
      ++depth;
    } else if (depth == 0 && (c == ',' || c == '}')) {
      return at;
    } else if (c == '}' || c == ']') {
      --depth;
    }
  }
  return json.size();
}

// What stands behind the result in an answer: the arguments after the call, or nothing.
std::string behind_result(const std::string& answer) {
  constexpr std::string_view kBegin = "{\"result\":";
  if (!answer.starts_with(kBegin)) return "}";
  return answer.substr(end_of_value(answer, kBegin.size()));
}

// Empties every text among the arguments but the address, and gives what they were.
Lines empty_texts(std::string& arguments) {
  Lines emptied;
  std::size_t at = arguments.find('"');
  while (at != std::string::npos) {
    const std::size_t colon = arguments.find("\":", at);
    if (colon == std::string::npos) break;
    const bool address = std::string_view(arguments).substr(at, colon - at) == "\"aServerURL";
    const std::size_t value = colon + 2;
    std::size_t end = end_of_value(arguments, value);
    if (arguments[value] == '"' && !address) {
      emptied.push_back(arguments.substr(value + 1, end - value - 2));
      arguments.replace(value, end - value, "\"\"");
      end = value + 2;
    }
    at = arguments.find('"', end);
  }
  return emptied;
}

std::string escaped(const std::string& text) {
  std::string xml;
  for (const char c : text) {
    if (c == '&') {
      xml += "&amp;";
    } else if (c == '<') {
      xml += "&lt;";
    } else {
      xml += c;
    }
  }
  return xml;
}

// Every element of this text becomes one without any.
void empty_elements(std::string& request, const std::string& text) {
  const std::string what = ">" + text + "</";
  for (std::size_t at = request.find(what); at != std::string::npos; at = request.find(what, at)) {
    request.replace(at, request.find('>', at + what.size()) + 1 - at, "/>");
  }
}

/// The first case's log, taken apart.
struct Log {
  Lines before;  ///< what is written when an exchange fails, but for the error line
  Lines end;     ///< what the object's end writes
};

bool is_exit(const std::string& line) {
  return line.starts_with("ExitMethod ") ||
         (line.starts_with("LogInfo ") && line.find("\"Exiting Method...\"") != std::string::npos);
}

bool is_exchange(const std::string& line) {
  return line.starts_with("@sendXML") || line == "@exchange" || line == "@getHTTPTransport" ||
         line.starts_with("@inline");
}

// On SOAP the lines go as far as those of the exchange. A service object writes no lines: there
// they go as far as the exit line or a line that reports a time. The operations without an enter
// line have no exit line either.
Log taken_apart(Lines lines) {
  Log log;
  while (!lines.empty() && lines.back().find(".Class_Terminate() ") != std::string::npos) {
    log.end.insert(log.end.begin(), lines.back());
    lines.pop_back();
  }
  const auto exchange = std::find_if(lines.rbegin(), lines.rend(), is_exchange);
  if (exchange != lines.rend()) {
    lines.erase(exchange.base(), lines.end());
  } else {
    if (!lines.empty() && is_exit(lines.back())) lines.pop_back();
    while (!lines.empty() && lines.back().starts_with("LogAtLevel ")) lines.pop_back();
  }
  log.before = std::move(lines);
  return log;
}

class LawBook {
 public:
  LawBook(const WireFile& file, const WireFile* other) : file_(file), other_(other) {}

  LawCases cases() {
    if (!begin()) return std::move(found_);
    if (first_.url) {
      soap_laws();
    } else if (!first_.dal.empty()) {
      dal_laws();
    }
    if (first_.url || !first_.dal.empty()) answer_laws();
    if (!file_.disabled_by.empty() && (first_.dal.empty() || other_ == nullptr)) {
      problem("disabled by: there is no other route");
    }
    for (const auto& exception : file_.exceptions) {
      if (!contains(used_, exception)) problem("not: \"" + exception + "\" keeps no law away");
    }
    return std::move(found_);
  }

 private:
  bool begin() {
    for (const auto& exception : file_.exceptions) {
      const bool known = std::any_of(std::begin(kLaws), std::end(kLaws),
                                     [&](const Law& law) { return is_of(law, exception); });
      if (!known) problem("not: \"" + exception + "\" is no law and a reason");
    }
    for (const Tail& tail : kTails) {
      const std::string name(tail.name);
      const bool found = tail.logs ? file_.tail.starts_with(name + " BV") : file_.tail == name;
      if (!found) continue;
      tail_ = &tail;
      if (tail.logs) log_name_ = file_.tail.substr(name.size() + 1);
    }
    if (tail_ == nullptr) problem("tail: \"" + file_.tail + "\" is none");
    if (file_.cases.empty() || file_.cases.front().steps.empty()) problem("there is no first case");
    if (!found_.problems.empty()) return false;
    first_ = file_.cases.front().steps.front();
    return true;
  }

  static bool is_of(const Law& law, const std::string& exception) {
    return exception.starts_with(std::string(law.name) + ": ");
  }

  void problem(const std::string& what) { found_.problems.push_back(what); }

  void hold(const Law& law, const std::function<void(WireStep&)>& change) {
    hold(law, first_, change);
  }

  void hold(const Law& law, WireStep step, const std::function<void(WireStep&)>& change) {
    for (const auto& exception : file_.exceptions) {
      if (!is_of(law, exception)) continue;
      used_.push_back(exception);
      return;
    }
    change(step);
    found_.cases.push_back({.claim = "law: " + std::string(law.claim), .steps = {step}});
  }

  void soap_laws() {
    hold(kLostConnection, [this](WireStep& step) {
      step.reply.reset();
      step.broken = "0x80044307 HTTPTransport lost on the way";
      stop_at_send(step);
      // The functions that send for an operation raise an error again without its help.
      const bool own_send = contains(step.log, "@inline") || contains(step.log, "@inlineUntraced");
      fail(step, {"-2147204345", "0x80044307", "0x80044307", "HTTPTransport", "lost on the way",
                  own_send});
      no_contact(step);
    });
    hold(kFault, [this](WireStep& step) {
      // No code that any operation maps: those are told by the files.
      step.reply.reset();
      step.fault = "20041 the server's words";
      const bool own_parse = std::none_of(step.log.begin(), step.log.end(), [](const auto& line) {
        return line.starts_with("@sendXML ") || line == "@exchange";
      });
      fault(step, own_parse ? kSoapFault.description : "the server's words");
    });
    if (first_.request) {
      hold(kEmptyTexts, [this](WireStep& step) { empty(step); });
    }
    if (other_ == nullptr) {
      hold(kDalOn, [](WireStep& step) {
        step.given.insert(step.given.begin(), {"UsingTorvexDAL", "UseDALSave"});
        std::erase(step.after, "not UseDALSave");
        step.after.emplace_back("UseDALSave");
      });
    }
  }

  void dal_laws() {
    if (other_ != nullptr && !other_->cases.empty() && !other_->cases.front().steps.empty()) {
      const WireStep soap = other_->cases.front().steps.front();
      hold(kSwitchedOff, soap, [this](WireStep& step) { by_soap(step, "not UsingTorvexDAL"); });
      hold(kDisabled, soap, [this](WireStep& step) {
        if (file_.disabled_by.empty()) problem("`disabled by` is not stated");
        by_soap(step, "disabled urn:OtherService.other|" + file_.disabled_by + "|");
      });
      hold(kOtherEntries, [this](WireStep& step) { step.given.push_back(other_entries()); });
    }
    hold(kNoObjects, [this](WireStep& step) {
      const auto on = std::find(step.given.begin(), step.given.end(), "UsingTorvexDAL");
      if (on != step.given.end()) *on = "UsingTorvexDAL without service objects";
      step.dal.clear();
      step.reply.reset();
      fail(step, kNotSet);
      no_contact(step);
    });
    hold(kFailingObject, [this](WireStep& step) {
      const std::string object = step.dal.front().substr(0, step.dal.front().find('.'));
      step.reply.reset();
      step.broken = "0x80044301 " + object + " nobody there";
      fail(step, {"-2147204351", "0x80044301", "0x80044301", object, "nobody there", true});
      no_contact(step);
    });
    hold(kFault, [this](WireStep& step) {
      step.reply.reset();
      step.fault = "20041 the server's words";
      fault(step, kSoapFault.description);
    });
    hold(kNoXml, [this](WireStep& step) {
      step.reply.reset();
      step.raw = "no such document";
      fail(step, kNotWellFormed);
      no_contact(step);
    });
  }

  void answer_laws() {
    hold(kNoParameter, [this](WireStep& step) {
      step.reply = "";
      fail(step, kNoSuchNode);
    });
    if (first_.answer.value_or("").starts_with("{\"result\":{\"node\":")) {
      hold(kPlainText, [](WireStep& step) {
        step.reply = "<return>R-5</return>";
        step.answer =
            "{\"result\":{\"node\":{\"name\":\"return\",\"value\":\"R-5\",\"nodes\":[]}}" +
            behind_result(*step.answer);
      });
    }
    if (!file_.returns_text) return;
    const auto comes_back = [this](const Law& law, const char* reply, const std::string& text) {
      hold(law, [&](WireStep& step) {
        step.reply = reply;
        step.answer = "{\"result\":\"" + text + "\"" + behind_result(step.answer.value_or(""));
      });
    };
    comes_back(kEmptyResult, "<return/>", "");
    comes_back(kNilResult, "<return xsi:nil=\"true\"/>", "");
    comes_back(kTruthValue, "<return xsi:type=\"xsd:boolean\">true</return>", "True");
    hold(kChildren, [this](WireStep& step) {
      step.reply = "<return><GID>G-7</GID></return>";
      fail(step, kMismatch);
    });
  }

  // The answer and the log after an error, and nothing that only a success writes.
  void fail(WireStep& step, const Failure& failure) {
    const bool help = failure.help && tail_->keeps_help;
    const std::string description = tail_->name == "overview" ? "" : failure.description;
    std::string outcome = "{\"error\":{\"number\":" + failure.number + ",\"hex\":\"" + failure.hex +
                          "\",\"source\":\"" + failure.source + "\",\"description\":\"" +
                          description + "\",\"helpFile\":\"" + (help ? "help.chm" : "") +
                          "\",\"helpContext\":" + (help ? "12" : "0") + "}";
    if (tail_->name == "swallow") outcome = "{\"result\":null";
    step.answer = outcome + behind_result(step.answer.value_or(""));
    Log log = taken_apart(std::move(step.log));
    step.log = std::move(log.before);
    if (tail_->logs) {
      step.log.push_back("LogError " + log_name_ + " " + failure.logged + " \"" + failure.source +
                         "\" \"" + description + "\" 0");
    }
    step.log.insert(step.log.end(), log.end.begin(), log.end.end());
  }

  // A fault, with the description that it has as it reaches the tail.
  void fault(WireStep& step, const std::string& description) {
    Failure failure = kSoapFault;
    failure.description = description;
    if (tail_->name == "rfq" || tail_->name == "fault string") {
      failure.description = "the server's words";
    }
    if (tail_->name == "rfq") {
      failure.number = "-2147210403";
      failure.hex = "0x80042B5D";
    }
    fail(step, failure);
    no_contact(step);
  }

  void empty(WireStep& step) {
    const Lines texts = empty_texts(step.arguments);
    for (const std::string& text : texts) {
      if (step.user_id == text) step.user_id = "";
      if (!text.empty()) empty_elements(*step.request, escaped(text));
    }
  }

  // The first case of the other route's file, in the state of this one's and with one more line.
  void by_soap(WireStep& step, const std::string& last) {
    step.given.insert(step.given.end(), first_.given.begin(), first_.given.end());
    step.given.push_back(last);
    if (contains(first_.given, "UseDALSave")) {
      std::erase(step.after, "not UseDALSave");
      step.after.emplace_back("UseDALSave");
    }
  }

  // The entry in other letters, of a longer method, of another service, and without its end.
  std::string other_entries() const {
    const std::string& entry = file_.disabled_by;
    const std::size_t dot = entry.rfind('.') + 1;
    const std::string method = entry.substr(dot);
    std::string letters = method;
    for (char& c : letters) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    return "disabled " + entry.substr(0, dot) + letters + "|" + entry + "s|urn:OtherService." +
           method + "|" + entry;
  }

  static void stop_at_send(WireStep& step) {
    const auto send = std::find_if(step.transport.begin(), step.transport.end(),
                                   [](const auto& line) { return line.starts_with("Send "); });
    if (send != step.transport.end()) step.transport.erase(send + 1, step.transport.end());
  }

  static void no_contact(WireStep& step) {
    std::erase(step.after, "LastHeartBeat");
    if (!contains(step.after, "not LastHeartBeat")) step.after.emplace_back("not LastHeartBeat");
  }

  const WireFile& file_;
  const WireFile* other_;
  const Tail* tail_ = nullptr;
  std::string log_name_;
  WireStep first_;
  Lines used_;  ///< the exceptions that kept a law away
  LawCases found_;
};

}  // namespace

std::span<const Law> laws() {
  return kLaws;
}

LawCases law_cases(const WireFile& file, const WireFile* other) {
  return LawBook(file, other).cases();
}

}  // namespace bvconn::test
