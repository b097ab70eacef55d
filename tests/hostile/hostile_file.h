#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The files that tell what a hostile server does and what a call makes of it. README.md describes
/// them.
namespace bvconn::test {

/// How the text of a step becomes the bytes of an HTTP reply.
struct Framing {
  std::string status = "200 OK";
  std::string type = "text/xml; charset=utf-8";
  std::vector<std::string> head;        ///< further header lines
  std::vector<std::string> as;          ///< packed or encoded, in this order
  std::optional<std::string> length{};  ///< stated in place of the right one; "none"
};

struct HostileStep {
  enum class Moment {
    kAccepted,  ///< as soon as the connection is there
    kTunnel,    ///< when a proxy was asked to make a tunnel
    kAsked,     ///< when the request is there, whole
  };
  enum class Kind {
    kReply,   ///< what stands in the method's response element
    kBody,    ///< what stands in the envelope's Body
    kRaw,     ///< the body of a reply of HTTP
    kSend,    ///< bytes as they stand
    kBelow,   ///< bytes below TLS
    kRepeat,  ///< bytes again and again
    kThen,    ///< no bytes: "close", "reset", "cut", "hang", "unread", "wait N"
  };
  Moment moment = Moment::kAsked;
  Kind kind = Kind::kSend;
  std::string text;
  Framing framing;
};

/// What a call should make of it. A field that a case does not tell is not looked at, but for
/// outcome and status, which have their usual values.
struct Expected {
  std::optional<std::string> value;        ///< the first parameter's value as text
  std::optional<std::size_t> size;         ///< the bytes of that text
  std::optional<std::size_t> nodes;        ///< its child nodes
  std::optional<std::int32_t> unreadable;  ///< its value fails with this number
  std::optional<std::int32_t> raises;
  std::optional<std::int32_t> recorded;  ///< returns, while the record holds this number
  std::optional<std::string> words;      ///< the whole description
  std::vector<std::string> says;         ///< parts of the description
  std::vector<std::string> silent;       ///< what the description does not show
  std::optional<std::string> source;
  std::optional<std::string> outcome;
  std::optional<std::int32_t> status;
  std::vector<std::string> sends;  ///< lines of the good request that comes next
  std::vector<std::string> sends_not;
};

struct HostileCase {
  int line = 0;  ///< of the file, for messages
  std::string claim;
  std::vector<std::string> routes{"soap"};
  std::string server = "plain";
  std::string
      through;      ///< "proxy", "no proxy" (one that is not there), "port TEXT"; empty: straight
  std::string url;  ///< in place of the server's
  std::string call = "GetQuotePrintout";
  std::optional<int> on;  ///< which request of the call it is that is answered so
  bool kept = false;      ///< a good call was made on the same connection before
  std::int32_t timeout_ms = 0;
  std::vector<std::pair<std::string, std::string>> options;
  std::chrono::milliseconds within{2000};
  std::size_t memory_mib = 10;
  std::vector<HostileStep> steps;
  std::map<std::string, Expected> expected;  ///< by route
};

struct HostileFile {
  std::vector<HostileCase> cases;
  std::vector<std::string> problems;  ///< what is wrong with the file itself
};

HostileFile read_hostile_file(std::string_view text);

}  // namespace bvconn::test
