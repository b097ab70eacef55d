#include "call_command.h"

#include <chrono>
#include <cstdint>
#include <exception>
#include <iomanip>
#include <optional>
#include <utility>

#include "bvconn/automation/interface.h"
#include "bvconn/core/session_state.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/exchange/mask_request.h"
#include "bvconn/platform/explain.h"
#include "call_answer.h"
#include "call_status.h"
#include "connection_scope.h"
#include "dal_login.h"
#include "exchange_view.h"
#include "input_files.h"
#include "interruption.h"
#include "json_text.h"
#include "library_settings.h"
#include "print_request.h"
#include "target.h"

namespace bvconn::tool {
namespace {

using automation::Member;
using automation::MemberKind;
using automation::Value;
using automation::ValueType;

/// The text behind the equals sign: a file's contents, or itself.
std::string value_text(std::string_view name, std::string_view given) {
  if (given.starts_with("@@")) return std::string(given.substr(1));
  if (!given.starts_with('@')) return std::string(given);
  std::string text = read_input(std::string(given.substr(1)));
  return names_password(name) ? without_line_end(std::move(text)) : text;
}

/// Names the other places from which these two can come.
void require_connection(const Member& member, const CallArguments& arguments) {
  const auto require = [&](std::string_view name, std::string_view places) {
    const automation::Argument* argument = member.find_argument(name);
    if (argument == nullptr || argument->optional) return;
    const auto index = static_cast<std::size_t>(argument - member.arguments.data());
    if (!std::holds_alternative<std::monostate>(arguments.values[index])) return;
    throw UsageError("argument " + std::string(name) + " is required; give it, or " +
                     std::string(places) + " or a profile");
  };
  require("aServerURL", "--server, BVCONN_SERVER");
  require("aSessionID", "--session, BVCONN_SESSION");
}

}  // namespace

std::vector<std::string> with_files_read(std::vector<std::string> texts) {
  for (std::string& text : texts) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) continue;
    std::string_view name = std::string_view(text).substr(0, equals);
    if (name.ends_with(':')) name.remove_suffix(1);
    std::string value = value_text(name, std::string_view(text).substr(equals + 1));
    if (value.starts_with('@')) value.insert(0, 1, '@');
    text.replace(equals + 1, std::string::npos, value);
  }
  return texts;
}

CallArguments read_arguments(const Member& member, const std::vector<std::string>& texts,
                             const Connection& connection) {
  CallArguments arguments;
  arguments.values.resize(member.arguments.size());
  for (const std::string& text : texts) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) throw UsageError(text + ": NAME=VALUE is expected");
    std::string_view name = std::string_view(text).substr(0, equals);
    const bool is_json = name.ends_with(':');
    if (is_json) name.remove_suffix(1);
    const automation::Argument* argument = member.find_argument(name);
    if (argument != nullptr &&
        !std::holds_alternative<std::monostate>(
            arguments.values[static_cast<std::size_t>(argument - member.arguments.data())])) {
      throw UsageError("argument " + std::string(name) + " is given twice");
    }
    place_argument(member, name, arguments, [&](ValueType type) {
      const std::string value = value_text(name, std::string_view(text).substr(equals + 1));
      return is_json ? value_from_json(parse_json(value), type, arguments)
                     : value_from_text(value, type, arguments);
    });
  }
  fill_arguments(member, connection, arguments);
  require_connection(member, arguments);
  require_arguments(member, arguments);
  return arguments;
}

namespace {

/// One call from the login to what is reported of it.
class CallRun {
 public:
  CallRun(const CallOptions& options, const Target& target, const CallArguments& arguments,
          const AnswerPrinter& printer, const AnswerPrinter::Streams& streams)
      : options_(options),
        target_(target),
        arguments_(arguments),
        printer_(printer),
        err_(streams.err),
        terminal_(streams.err_terminal) {}

  int run() {
    const Interruption interruption;
    const ConnectionScope scope(options_.connection);
    int status = options_.connection.dal.empty() ? kDone : log_in();
    if (status == kDone) status = call();
    return interruption.came() ? interrupted() : status;
  }

 private:
  using Clock = std::chrono::steady_clock;

  int log_in() {
    const auto failure = log_in_to_dal(options_.connection);
    if (!failure) return kDone;
    err_ << "bvconn: " << terminal_.red(login_failure_text(*failure)) << '\n';
    hint(login_advice(*failure));
    return call_status(*failure);
  }

  int call() {
    if (const auto last = session().LastExchange()) exchanges_before_ = last->number;
    const auto begun = Clock::now();
    std::string error_json;
    int status = kFailed;
    try {
      const auto object = make_object();
      const Value result = target_.member->invoke(object.get(), arguments_.values);
      report_time(begun);
      printer_.result(*target_.member, arguments_, result);
      return kept_to_itself();
    } catch (const Error& error) {
      report_time(begun);
      error_json = json_error(error);
      const auto last = exchange();
      report(" failed: ", error);
      if (last && last->error) add_words(error, last->error->description);
      status = is_setting_wrong(error) ? kSettings : call_status(error, last);
    } catch (const std::exception& error) {
      error_json = internal_error_json(error.what());
      err_ << "bvconn: " << options_.path << ": internal failure: " << error.what() << '\n';
    }
    printer_.error(*target_.member, arguments_, error_json);
    return status;
  }

  std::shared_ptr<void> make_object() const {
    auto object = target_.info->make();
    for (const Member& member : target_.info->members) {
      if (member.kind != MemberKind::kEvent) continue;
      member.connect(object.get(), [this, name = target_.info->name + "." + member.name] {
        printer_.event(name);
      });
    }
    return object;
  }

  /// The last exchange of this call, if it came to one.
  std::optional<Exchange> exchange() const {
    auto last = session().LastExchange();
    return last && last->number > exchanges_before_ ? std::move(last) : std::nullopt;
  }

  /// The status of a call that returned: some operations raise nothing whatever happens.
  int kept_to_itself() {
    const auto last = exchange();
    if (!last || !last->error || last->raised) return kDone;
    report(" returned, but its exchange failed: ", recorded_error(*last));
    return call_status(*last);
  }

  void report(std::string_view what, const Error& error) {
    err_ << "bvconn: " << options_.path << what
         << terminal_.red("error " + hex_number(error.number)) << " (" << error.number << ") from "
         << error.source << ": " << error.description << '\n';
    hint(explain(error));
  }

  void hint(const std::string& advice) {
    err_ << "bvconn: " << terminal_.yellow("hint:") << ' ' << advice << '\n';
  }

  /// A mapped fault and one of the data access layer have lost the server's words on their way.
  void add_words(const Error& error, const std::string& recorded) {
    if (error.description.find(recorded) != std::string::npos) return;
    err_ << "bvconn: the server's words: " << recorded << '\n';
  }

  /// A setting that is no number fails like an argument that is none: then the settings tell.
  bool is_setting_wrong(const Error& error) {
    if (error.outcome != Outcome::kNotSent || error.number != error_numbers::kTypeMismatch) {
      return false;
    }
    const SettingState state = read_setting(find_setting("defaultTimeOut"));
    if (!state.wrong) return false;
    err_ << "bvconn: " << state.setting->name << " in " << state.place.name << " is "
         << state.remark << '\n';
    return true;
  }

  void report_time(Clock::time_point begun) {
    const std::chrono::duration<double> time = Clock::now() - begun;
    if (!terminal_.is_terminal || time < std::chrono::seconds(1)) return;
    err_ << "bvconn: " << options_.path << " took " << std::fixed << std::setprecision(1)
         << time.count() << " s\n";
  }

  int interrupted() {
    const auto last = exchange();
    const Outcome outcome = last ? last->outcome : Outcome::kNotSent;
    err_ << "bvconn: interrupted; " << options_.path << ": " << outcome_text(outcome)
         << (outcome == Outcome::kUnknown ? ": look whether it was done before calling again\n"
                                          : "\n");
    return kInterrupted;
  }

  const CallOptions& options_;
  const Target& target_;
  const CallArguments& arguments_;
  const AnswerPrinter& printer_;
  std::ostream& err_;
  const Terminal& terminal_;
  std::uint64_t exchanges_before_ = 0;
};

}  // namespace

int run_call(const CallOptions& options, const AnswerPrinter::Streams& streams) {
  const AnswerPrinter printer(options.form, streams, options.reply);
  try {
    const Target target = find_target(options.path);
    const CallArguments arguments =
        read_arguments(*target.member, options.arguments, options.connection);
    const int status = options.print_request
                           ? print_request(target, arguments,
                                           {.json = options.form == OutputForm::kJson,
                                            .shows_secrets = options.shows_secrets},
                                           streams.out, streams.err)
                           : CallRun(options, target, arguments, printer, streams).run();
    if (options.show_exchange) print_exchanges(streams.err);
    streams.out.flush();
    return streams.out ? status : kFailed;
  } catch (const UsageError& error) {
    const std::string text = options.path + ": " + error.what();
    streams.err << "bvconn: " << text << '\n';
    printer.usage(text);
    return kNotUnderstood;
  }
}

}  // namespace bvconn::tool
