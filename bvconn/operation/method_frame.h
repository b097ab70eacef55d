#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "bvconn/catalogues/bv_methods.h"
#include "bvconn/catalogues/bv_services.h"
#include "bvconn/core/logging.h"
#include "bvconn/core/recording.h"
#include "bvconn/core/transport.h"
#include "bvconn/dal/dal_switch.h"
#include "bvconn/operation/answer.h"
#include "bvconn/operation/tails.h"
#include "bvconn/platform/live_error.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn {

using MethodRow = std::string (BVMethods::*)() const;
using ServiceRow = std::string (BVServices::*)() const;

/// What an operation is, apart from its body. A block states only what departs from the default.
struct Operation {
  LogBlock log;
  /// The interface's own names, where the log lines bear others: what the record of exchanges
  /// shows.
  std::string_view cls = {};
  std::string_view name = {};
  /// The catalogue row of the wire name, or the wire name itself where no row has it.
  MethodRow method = nullptr;
  std::string_view wire = {};
  /// The row of the URN: the method's namespace and, as a rule, the SOAPAction.
  ServiceRow service = nullptr;
  /// The row of the SOAPAction, where that is another one.
  ServiceRow soap_action = nullptr;
  /// The row that the route is asked with, where that is another one.
  MethodRow route_method = nullptr;
  Tail tail = Tail::kPlain;
  /// The fault codes that `Tail::kFaultCode` maps, in the order in which they are compared.
  std::span<const FaultRow> faults = {};
};

/// What a call works with that is not its own. Every frame is given `{aServerURL, aSessionID}` in
/// this order.
/// deliberate [argument-order]: in the operations' interfaces the two stand in either order, and
/// first, last or apart.
struct CallContext {
  std::string_view url = {};
  std::string_view session_id = {};
  /// The envelope to work on; null for one of the call's own.
  const SoapEnvelope* envelope = nullptr;
};

/// An error that a frame is about to raise, or none. It has nothing to destroy, so that unwinding
/// need not stop in the frame; the frame takes what is in it. It needs no memory either.
class Raised {
 public:
  Raised() = default;
  Raised(const Raised&) = delete;
  Raised& operator=(const Raised&) = delete;

  void set(Error&& error) noexcept { held_ = std::construct_at(place(), std::move(error)); }
  explicit operator bool() const noexcept { return held_ != nullptr; }
  Error taken() noexcept {
    Error error(std::move(*held_));
    std::destroy_at(std::exchange(held_, nullptr));
    return error;
  }

 private:
  Error* place() noexcept { return reinterpret_cast<Error*>(storage_); }

  alignas(Error) std::byte storage_[sizeof(Error)];
  Error* held_ = nullptr;
};

/// One call of an operation: what its body works with. Its tail reads the envelope as the body left
/// it.
class Call {
 public:
  explicit Call(const Operation& operation, const CallContext& context = {});

  /// The wire name and the URN; looked up at first use.
  const std::string& method();
  const std::string& service();
  /// Chooses the service at run time; may be "".
  void service(std::string urn) { service_ = std::move(urn); }

  /// Whether the call takes the data access layer route: the method is not disabled there, the
  /// route is on, and what the operation asks besides holds too.
  bool takes_dal(bool and_also = true);
  dal::Services dal() const { return {}; }

  // A request: one of these begins it, and what follows adds to it in the order of the wire.

  /// Fills the envelope through `getEnvelope`, whose log lines are written.
  Call& getEnvelope();
  /// Fills the envelope by hand: the same content without log lines, and an encoding style if any.
  /// deliberate [encoding-style]: some operations state one, others in the same class do not.
  Call& request(std::string_view encoding_style = {});
  /// Fills the envelope without a `userID`.
  Call& request_without_session();

  /// Adds a parameter. Without a type the `xsi:type` follows from the value.
  Call& add(std::string_view name, const Variant& value, std::string_view type = {});
  /// Adds the very node, under its own name.
  Call& append(const SoapNode& node);
  /// Adds parameters that the server knows by their place alone.
  /// deliberate [param-bool]: a boolean as "param_bool", everything else as "param".
  template <class... Values>
  Call& params(const Values&... values) {
    (add(std::same_as<Values, bool> ? "param_bool" : "param", values), ...);
    return *this;
  }

  /// The envelope as it stands, made at its first use.
  const SoapEnvelope& envelope() { return made(envelope_); }
  SoapNodes& parameters() { return envelope().Parameters(); }
  /// The request as text, as it would be sent.
  std::string request_text() { return envelope().Serialize(); }
  /// A request in text form, around XML of the caller's that goes in as it stands.
  std::string literal_request(std::string_view xml);

  /// Sends with `sendXML`; the envelope then holds the reply. A time-out of 0 is the default one.
  Sent send(std::int32_t timeout = 0);
  /// As `send`, under a SOAPAction that no row has.
  Sent send_as(std::string_view soap_action);
  /// Sends with `getHTTPTransport` and `getResponseEnvelope`: default time-out, no timing line.
  Sent exchange();
  /// Sends ready text on `transport` and reads the reply into the envelope.
  Sent exchange_text(HTTPTransport& transport, std::string_view text);
  /// Reads the text that a service object gave into the envelope.
  /// deliberate [fault-words]: a fault in it, or in the reply to a ready text, leaves in constant
  /// words; those of the server are in the envelope alone.
  Sent parse(std::string text);

  /// The first parameter of the reply; fails with 0x80044204 where there is none.
  SoapNode first();
  /// Its value, as it came or as text.
  Variant value() { return first().Value(); }
  std::string text() { return to_text(value()); }
  /// The same of a reply in text form, as a service object gives it.
  Answer<SoapNode> first_of(std::string reply) { return parse(std::move(reply)).first(); }
  Answer<std::string> text_of(std::string reply) { return parse(std::move(reply)).text(); }
  /// The value of the first parameter as a boolean. An argument that is Empty is False, but a nil
  /// answer says nothing: it fails with 13.
  bool boolean();

  /// Gives the error line a method name made at run time.
  void error_name(std::string name) { error_name_ = std::move(name); }

  // The frame's own steps.
  void enter() { log_enter(operation_.log); }
  void exit() { log_exit(operation_.log); }
  bool has_failed() const noexcept { return failure_.has_value(); }
  /// Raises what a step that sends has handed back, if anything.
  void raise_failure();
  /// What was raised in the body; a copy, since whoever threw it may throw it again.
  void fail(const Error& error);
  /// What the operation's tail makes of the failure goes into `raised`, for the frame to raise.
  void tail(Raised& raised);

  /// Tells the record why the body failed: with the server's words, where it had some.
  void note_failure(Error& error) noexcept;

 private:
  std::string soap_action();
  Sent sent(std::optional<Failure> failure);
  std::optional<Error> raised_by_tail(Error& error);

  const Operation& operation_;
  std::string_view url_;
  std::string_view session_id_;
  SoapEnvelope envelope_;
  std::string method_;
  std::string service_;
  std::string error_name_;
  std::optional<Failure> failure_;
  RecordedCall record_;
};

template <class T>
bool Answer<T>::has_failed() const noexcept {
  return call_->has_failed();
}

template <class T>
Answer<T>::operator T() && {
  call_->raise_failure();
  return std::move(value_);
}

/// The shape of nearly every operation: enter line, body, exit line, and the operation's tail when
/// an error is raised anywhere on the way. Nothing but an `Error` leaves it, whatever was thrown.
///
/// It becomes a part of the operation that it is used in, so that an error that is raised has one
/// stack frame less to pass.
template <class Body>
[[gnu::always_inline]] inline auto ConnectorMethodFrame(const Operation& operation,
                                                        const CallContext& context, Body&& body) ->
    typename ResultOf<std::invoke_result_t<Body, Call&>>::Type {
  using Returned = std::invoke_result_t<Body, Call&>;
  using Result = typename ResultOf<Returned>::Type;
  Raised raised;
  {
    Call call(operation, context);
    try {
      call.enter();
      if constexpr (std::is_void_v<Returned>) {
        body(call);
        call.exit();
        return;
      } else if constexpr (ResultOf<Returned>::kIsAnswer) {
        Returned answer = body(call);
        if (!answer.has_failed()) {
          call.exit();
          return std::move(answer).take();
        }
      } else {
        Result result = body(call);
        call.exit();
        return result;
      }
    } catch (const Error& error) {
      call.fail(error);
    } catch (...) {
      call.fail(live_error());
    }
    call.tail(raised);
  }
  if (raised) throw raised.taken();
  // Only a tail that swallows gets here: the operation returns as if nothing had happened.
  return Result();
}

template <class Body>
[[gnu::always_inline]] inline auto ConnectorMethodFrame(const Operation& operation, Body&& body) ->
    typename ResultOf<std::invoke_result_t<Body, Call&>>::Type {
  return ConnectorMethodFrame(operation, CallContext(), std::forward<Body>(body));
}

}  // namespace bvconn
