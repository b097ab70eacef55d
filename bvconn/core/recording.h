#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "bvconn/platform/error.h"
#include "bvconn/platform/exchange/exchange_log.h"
#include "bvconn/platform/http/http_transport.h"
#include "bvconn/platform/text_buffer.h"
#include "bvconn/platform/torvexlib/service_object.h"

namespace bvconn {

/// One call of an operation in the thread's record, from its beginning to its end. The texts have
/// to outlive it. Nothing here changes what a call does, but for the outcome of its errors.
class RecordedCall {
 public:
  /// `cls` and `operation` are the interface's names.
  RecordedCall(std::string_view cls, std::string_view operation, std::string_view url = {},
               std::string_view session_id = {}) noexcept;
  ~RecordedCall();
  RecordedCall(const RecordedCall&) = delete;
  RecordedCall& operator=(const RecordedCall&) = delete;

  /// The call goes by the data access layer.
  void takes_dal() noexcept;
  /// The operation failed: `error` is given its outcome, where it has none yet. `words`
  /// are the server's own, where it had some besides the description. A call that came to no
  /// exchange has one from now on, which was not sent.
  void failed(Error& error, const std::optional<std::string>& words = std::nullopt) noexcept;
  /// The operation raises this error.
  void raised(Error& error) noexcept;

 private:
  void give_outcome(Error& error) const noexcept;

  ExchangeLog* log_ = nullptr;
  ExchangeLog::Call call_;
};

/// Sets the header of the transport's next requests.
void set_soap_action(HTTPTransport& transport, std::string_view value);

// An exchange of the running call, in its three forms. What the transport or the service object
// raises passes, an `Error` with its outcome.
void send_recorded(HTTPTransport& transport, std::string_view url, std::string_view text);
detail::TextBuffer receive_recorded(HTTPTransport& transport);
std::string invoke_recorded(ServiceObject& object, std::string_view operation,
                            std::span<const Variant> arguments, bool by_name);
/// What answered the running call's last `invoke_recorded`, and how, for people; "" where the
/// record does not have it.
std::string invoke_words();

}  // namespace bvconn
