#include "bvconn/core/recording.h"

#include <exception>
#include <utility>

#include "bvconn/core/session_state.h"
#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/http/buffered_reply.h"
#include "bvconn/platform/http/http_url.h"
#include "bvconn/platform/soap/xml_document.h"

namespace bvconn {
namespace {

// A record is for people who look at it later: no call fails over it.
template <class Write>
void quietly(Write write) noexcept {
  try {
    write();
  } catch (...) {
  }
}

void note(Exchange* exchange, const Error& error, std::string_view words) noexcept {
  if (exchange == nullptr || exchange->error) return;
  quietly([&] {
    exchange->error = ExchangeError{
        .number = error.number, .source = error.source, .description = std::string(words)};
  });
}

// What the transport or the service object knows besides; with one of the application's own
// nothing, or a throw.
template <class Ask>
const WireFacts* facts_of(Ask ask) noexcept {
  const WireFacts* facts = nullptr;
  quietly([&] { facts = ask(); });
  return facts;
}

void note(Exchange& exchange, const WireFacts* facts) noexcept {
  if (facts == nullptr) return;
  quietly([&] {
    exchange.http_status = facts->http_status;
    exchange.times = facts->times;
    exchange.bytes_sent = facts->bytes_sent;
    exchange.bytes_received = facts->bytes_received;
    exchange.reply_headers = facts->reply_headers;
    if (facts->refused_reply.size != 0) exchange.reply = facts->refused_reply;
  });
}

void set_outcome(Outcome outcome) noexcept {
  ExchangeLog& log = session().exchanges();
  log.running().outcome = outcome;
  if (Exchange* exchange = log.find(log.running())) exchange->outcome = outcome;
}

// Runs one step of an exchange. `outcome_of` says what an error of it tells, where it does not say
// so itself.
template <class Step>
auto run_step(Outcome (*outcome_of)(std::int32_t number), Step step) -> decltype(step()) {
  try {
    return step();
  } catch (Error& error) {
    if (error.outcome == Outcome::kNone) error.outcome = outcome_of(error.number);
    set_outcome(error.outcome);
    ExchangeLog& log = session().exchanges();
    note(log.find(log.running()), error, error.description);
    throw;
  } catch (...) {
    set_outcome(outcome_of(error_numbers::kConnectionLost));
    throw;
  }
}

Outcome outcome_of_receiving(std::int32_t number) {
  return number == error_numbers::kConnectionLost || number == error_numbers::kTimeout
             ? Outcome::kUnknown
             : Outcome::kAnswered;
}

Exchange* begin() noexcept {
  Exchange* exchange = session().exchanges().begin();
  if (exchange != nullptr) quietly([&] { exchange->at = session().clock().now(); });
  return exchange;
}

void write_text(BoundedText& text, const Variant& value) {
  switch (value.type()) {
    case Variant::Type::kString:
      text.assign(value.string());
      break;
    case Variant::Type::kDate:
      text.assign(conversions::iso_date_text(value.date()));
      break;
    case Variant::Type::kArray:
      for (const Variant& item : value.array().items()) {
        BoundedText part;
        write_text(part, item);
        if (text.size != 0) text.append("|");
        text.append(part.text);
      }
      break;
    case Variant::Type::kNode:
      if (value.node()) text.assign(node_to_xml(value.node()));
      break;
    case Variant::Type::kMissing:
    case Variant::Type::kBytes:
      break;
    default:
      text.assign(to_text(value));
  }
}

void write_arguments(Exchange& exchange, std::span<const Variant> arguments) {
  for (const Variant& value : arguments) {
    ExchangeArgument& argument = session().exchanges().add_argument(exchange);
    argument.type.assign(type_name(value.type()));
    write_text(argument.text, value);
  }
}

}  // namespace

RecordedCall::RecordedCall(std::string_view cls, std::string_view operation, std::string_view url,
                           std::string_view session_id) noexcept
    : call_{.cls = cls, .operation = operation, .url = url, .session_id = session_id} {
  quietly([&] {
    log_ = &session().exchanges();
    log_->enter(call_);
  });
}

RecordedCall::~RecordedCall() {
  if (log_ != nullptr) log_->leave(call_);
}

void RecordedCall::takes_dal() noexcept {
  call_.route = ExchangeRoute::kDal;
}

void RecordedCall::failed(Error& error, const std::optional<std::string>& words) noexcept {
  if (log_ == nullptr) return;
  if (call_.exchange == 0) {
    Exchange* exchange = begin();
    // The place may have been that of another request.
    if (exchange != nullptr) exchange->soap_action.reset();
    if (exchange != nullptr && call_.route == ExchangeRoute::kDal) {
      quietly([&] { exchange->url.assign(session().DALUrl); });
    }
  }
  give_outcome(error);
  note(log_->find(call_), error, words ? *words : error.description);
}

void RecordedCall::raised(Error& error) noexcept {
  if (log_ == nullptr) return;
  give_outcome(error);
  if (Exchange* exchange = log_->find(call_)) exchange->raised = error.number;
}

void RecordedCall::give_outcome(Error& error) const noexcept {
  if (error.outcome == Outcome::kNone) error.outcome = call_.outcome;
}

void set_soap_action(HTTPTransport& transport, std::string_view value) {
  transport.SOAPAction(value);
  ExchangeLog& log = session().exchanges();
  auto& action = log.soap_action;
  if (log.is_off()) {
    action.reset();
  } else {
    quietly([&] { action ? action->assign(value) : action.emplace(value); });
  }
}

void send_recorded(HTTPTransport& transport, std::string_view url, std::string_view text) {
  ExchangeLog& log = session().exchanges();
  if (Exchange* exchange = begin()) {
    quietly([&] {
      exchange->route = ExchangeRoute::kSoap;
      exchange->url.assign(url);
      exchange->soap_action = log.soap_action;
      exchange->request.assign(text);
    });
  }
  const auto write_facts = [&]() noexcept {
    if (Exchange* exchange = log.find(log.running())) {
      note(*exchange, facts_of([&] { return transport.LastWire(); }));
    }
  };
  try {
    run_step(&outcome_by_number, [&] { transport.Send(url, text); });
  } catch (...) {
    write_facts();
    throw;
  }
  set_outcome(Outcome::kAnswered);
  write_facts();
}

detail::TextBuffer receive_recorded(HTTPTransport& transport) {
  detail::TextBuffer reply =
      run_step(&outcome_of_receiving, [&] { return detail::receive_buffer(transport); });
  ExchangeLog& log = session().exchanges();
  if (Exchange* exchange = log.find(log.running())) {
    quietly([&] { exchange->reply.assign(reply.view()); });
  }
  return reply;
}

std::string invoke_recorded(ServiceObject& object, std::string_view operation,
                            std::span<const Variant> arguments, bool by_name) {
  ExchangeLog& log = session().exchanges();
  if (Exchange* exchange = begin()) {
    quietly([&] {
      exchange->route = ExchangeRoute::kDal;
      exchange->url.assign(session().DALUrl);
      exchange->soap_action.reset();
      exchange->object.assign(object.name());
      exchange->object_operation.assign(operation);
      write_arguments(*exchange, arguments);
    });
  }
  const auto last_wire = [&]() noexcept { return facts_of([&] { return object.last_wire(); }); };
  const auto write_facts = [&]() noexcept {
    if (Exchange* exchange = log.find(log.running())) note(*exchange, last_wire());
  };
  std::string result;
  try {
    result =
        run_step(&outcome_by_number, [&] { return object.invoke(operation, arguments, by_name); });
  } catch (...) {
    write_facts();
    throw;
  }
  const WireFacts* facts = last_wire();
  set_outcome(facts != nullptr && !facts->went_out ? Outcome::kNotSent : Outcome::kAnswered);
  write_facts();
  if (Exchange* exchange = log.find(log.running())) {
    quietly([&] { exchange->result.assign(result); });
  }
  return result;
}

std::string invoke_words() {
  ExchangeLog& log = session().exchanges();
  const Exchange* const exchange = log.find(log.running());
  if (exchange == nullptr || exchange->route != ExchangeRoute::kDal || exchange->http_status == 0) {
    return "";
  }
  return "the data access layer at " + detail::shown_url(exchange->url) + " answered " +
         exchange->object + "." + exchange->object_operation + " with the status " +
         conversions::integer_text(exchange->http_status);
}

}  // namespace bvconn
