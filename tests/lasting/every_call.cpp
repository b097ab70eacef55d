#include "lasting/every_call.h"

#include <chrono>

#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/core/session_state.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/observation/marks.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/timeout_scope.h"
#include "lasting/echo_server.h"

namespace bvconn::test {
namespace {

using automation::Argument;
using automation::ClassInfo;
using automation::Member;
using automation::Value;
using automation::ValueType;

// Long enough for any answer, and short where none will come.
constexpr std::chrono::seconds kPatience{60};
constexpr std::chrono::milliseconds kImpatience{5};

/// Moments before any that a clock gives.
constexpr Date kLongAgo{.milliseconds = 86'400'000};

/// When the clock of the thread's next session stands still.
thread_local Date next_time;

class StandingClock final : public Clock {
 public:
  Date now() override { return time_; }
  double timer() override { return 36'000; }

 private:
  Date time_ = next_time;
};

SoapNode document(const std::string& text) {
  SoapNode node = SoapNode::make("Project");
  node.Nodes().Create("Name", text);
  return node;
}

std::string xml_of(const Value& value) {
  const auto* const variant = std::get_if<Variant>(&value);
  if (variant == nullptr) return "";
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.SetMethod("result", "");
  envelope.Parameters().Create("value", *variant);
  return without_marks(envelope.Serialize());
}

/// The arguments of an operation on the data access layer.
std::string arguments_of(const Exchange& exchange) {
  std::string all;
  for (const ExchangeArgument& each : exchange.arguments) all.append(each.text.text).append(" ");
  return all;
}

}  // namespace

std::string EveryCall::name() const {
  return info->name + "." + operation->name + (dal ? " by DAL" : " by SOAP");
}

std::string Ending::words() const {
  return (raised != 0 ? hex_number(raised) : "returned " + result) +
         ", exchanges: " + std::to_string(exchanges) +
         (in_contact ? ", in contact" : ", not in contact");
}

platform::Platform platform_with_own_times() {
  platform::Platform all = platform::system_platform();
  all.clock = [] { return std::make_shared<StandingClock>(); };
  return all;
}

Caller::Caller(const Addresses& addresses, int thread, int session)
    : addresses_(addresses),
      mark_{.thread = thread, .session = session},
      login_(mark_),
      time_(from_civil({.year = 2007, .month = 1, .day = 1 + thread, .hour = 1 + session})),
      document_(std::make_shared<XMLDocument>()) {
  next_time = time_;
  BVConnectorObject object;
  object.UserName(login_.text());
  object.Password(login_.text());
  object.InitTorvexDAL(addresses_.dal);
  static_cast<void>(
      BVInvoiceConnector().GetInvoice(addresses_.soap + mark_.text(), mark_.text(), mark_.text()));
}

std::string Caller::text_for(const EveryCall& call) const {
  if (call.texts == Texts::kSmallNumbers) return "7";
  return call.texts == Texts::kNames ? "m" + mark_.text() : mark_.text();
}

Value Caller::argument(const Argument& argument, const EveryCall& call) const {
  const std::string text = mark_.text();
  switch (argument.type) {
    case ValueType::kBoolean:
      return Variant(false);
    case ValueType::kInt16:
      return Variant(std::int16_t{3});
    case ValueType::kInt32:
      return Variant(std::int32_t{0});
    case ValueType::kStringArray:
      return StringArray{text, text};
    case ValueType::kSoapNode:
      return Variant(document(text));
    case ValueType::kXMLDocument:
      return document_.get();
    case ValueType::kVariant:
      if (call.texts == Texts::kArrays) return Variant(StringArray{text, text});
      return Variant(text_for(call));
    default:
      if (argument.name == "aServerURL") return Variant(addresses_.soap + text);
      return Variant(argument.name == "aSessionID" ? text : text_for(call));
  }
}

std::vector<Value> Caller::arguments(const EveryCall& call) {
  std::vector<Value> values;
  // Where a text decides what an operation does, any that it knows will do.
  const auto fixed = automation::detail::cases_of(*call.operation).back();
  for (const Argument& each : call.operation->arguments) {
    const bool is_fixed = fixed && fixed->argument == each.name;
    values.push_back(is_fixed ? Value(Variant(fixed->text)) : argument(each, call));
  }
  return values;
}

Ending Caller::call(const EveryCall& call, Mishap mishap) {
  ++mark_.count;
  mark_.count %= 10'000;
  mark_.mishap = mishap_for(call, mishap);
  mark_.answering = call.answering;
  complaints_.clear();
  BVConnectorObject object;
  object.UsingTorvexDAL(call.dal);
  object.UseDALSave(call.dal);
  SessionState& state = session();
  state.LastHeartBeat = kLongAgo;
  state.KeepExchanges(0);
  state.KeepExchanges(8);
  const std::vector<Value> values = arguments(call);
  Ending ending;
  const TimeoutScope limit(mark_.mishap == Mishap::kSilence ? kImpatience
                                                            : std::chrono::milliseconds(kPatience));
  try {
    const auto connector = call.info->make();
    ending.result = xml_of(call.operation->invoke(connector.get(), values));
  } catch (const Error& error) {
    ending.raised = error.number;
  }
  ending.in_contact = state.LastHeartBeat != kLongAgo;
  if (ending.in_contact && state.LastHeartBeat != time_) {
    complaints_.push_back("the time of contact is not of the session's own clock");
  }
  look_at_records(call);
  ending.exchanges = state.Exchanges().size();
  return ending;
}

void Caller::look_at_records(const EveryCall& call) {
  for (const Exchange& each : session().Exchanges(Secrets::kShown)) {
    const bool soap = each.route == ExchangeRoute::kSoap;
    const std::string sent = each.url + " " + each.request.text + " " + arguments_of(each);
    const std::vector<Mark> marks = marks_in(sent);
    for (const Mark& mark : marks) {
      if (mark != mark_) complaints_.push_back("it sent the mark of another call");
    }
    if (each.operation != call.operation->name) complaints_.push_back("it bears another's name");
    if (soap && marks.empty()) complaints_.push_back("it sent no mark");
    if (soap ? !each.url.starts_with(addresses_.soap) : each.url != addresses_.dal) {
      complaints_.push_back("it went to another's address");
    }
    const Mark& answering = marks.empty() ? login_ : mark_;
    if (each.outcome != Outcome::kAnswered || answering.mishap != Mishap::kNone) continue;
    const std::string& answer = soap ? each.reply.text : each.result.text;
    if (answer.find(echo_of(answering)) == std::string::npos) {
      complaints_.push_back("it was answered with " + answer);
    }
  }
}

namespace {

/// The call with arguments that make it send, where there are any, and with an answer that it
/// returns from, where there is one.
EveryCall found(Caller& caller, EveryCall call) {
  for (int texts = 0; texts < kTexts && !call.sends; ++texts) {
    call.texts = static_cast<Texts>(texts);
    caller.call(call, Mishap::kNone);
    const auto last = session().LastExchange(Secrets::kShown);
    call.sends = last && last->outcome == Outcome::kAnswered;
    call.bears_mark = call.sends && !marks_in(last->url + " " + arguments_of(*last)).empty();
  }
  for (int answering = 0; answering < kAnswerings; ++answering) {
    call.answering = static_cast<Answering>(answering);
    if (caller.call(call, Mishap::kNone).raised == 0) return call;
  }
  call.answering = Answering::kAddress;
  return call;
}

}  // namespace

std::vector<EveryCall> every_call(Caller& caller) {
  std::vector<EveryCall> calls;
  for (const ClassInfo* info : automation::classes()) {
    if (info->predeclared) continue;
    for (const Member& member : info->members) {
      if (member.kind != automation::MemberKind::kOperation) continue;
      for (const bool dal : {false, true}) {
        calls.push_back(found(caller, {.info = info, .operation = &member, .dal = dal}));
      }
    }
  }
  return calls;
}

Mishap mishap_for(const EveryCall& call, Mishap mishap) {
  if (!call.bears_mark) return Mishap::kNone;
  const bool is_beat = call.operation->name == "sendHeartBeat";
  return is_beat && mishap == Mishap::kSilence ? Mishap::kReset : mishap;
}

}  // namespace bvconn::test
