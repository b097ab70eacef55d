#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "bvconn/platform/error.h"
#include "bvconn/testing/seen_call.h"

namespace bvconn::test {

/// What a request is answered with, on either route.
class ScriptedAnswer {
 public:
  /// A good reply. `result` that begins with "<" is the XML of the response's parameters, of which
  /// most operations give back the first: `<return><Name>N</Name></return>`. Any other text is the
  /// text of one such parameter; "" is a response without any.
  static ScriptedAnswer reply(std::string_view result);
  /// A SOAP fault; neither text needs escaping.
  static ScriptedAnswer fault(std::string_view code, std::string_view text);
  /// These very bytes in the place of a reply.
  static ScriptedAnswer bytes(std::string whole);
  /// The transport or the service object fails with this number (error_numbers.h) and these words.
  /// What is wrong with a reply (0x80044305, 0x80044306) fails when it is received, all else when
  /// the request is sent.
  static ScriptedAnswer failure(std::int32_t number, std::string_view description = "");
  /// The same with an error of one's own. `in_receive` where the sending was good.
  static ScriptedAnswer failure(const Error& error, bool in_receive);
  /// Whatever `answer` makes of the request, on the thread that asks.
  static ScriptedAnswer computed(std::function<ScriptedAnswer(const SeenCall&)> answer);

  // What the transport and the service objects of a test's world take from it.

  /// The answer itself: a computed one, computed.
  ScriptedAnswer to(const SeenCall& call) const;
  std::string text_for(const SeenCall& call) const;
  const std::optional<Error>& error() const { return error_; }
  bool fails_in_receive() const { return fails_in_receive_; }

 private:
  std::string text_;
  bool is_whole_ = true;
  std::optional<Error> error_;
  bool fails_in_receive_ = false;
  std::function<ScriptedAnswer(const SeenCall&)> compute_;
};

}  // namespace bvconn::test
