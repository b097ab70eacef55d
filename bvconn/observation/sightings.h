#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "bvconn/platform/soap/variant.h"

namespace bvconn::automation {

/// What reached the outside world in one run.
struct Sightings {
  struct Post {
    std::string url;
    std::string text;
    /// Nothing where no request of the session has set it.
    std::optional<std::string> soap_action;
    std::int32_t timeout_ms = 0;
  };
  struct DalCall {
    std::string object;
    std::string operation;
    bool by_name = false;
    std::vector<Variant> arguments;
  };
  /// One call of the logger.
  struct LogLine {
    std::string action;  ///< "EnterMethod", "ExitMethod", "LogInfo", "LogError", …
    std::string cls;
    std::string method;
    std::int32_t level = 0;  ///< of the lines that have one
    std::string text;        ///< of an error its description

    friend bool operator==(const LogLine&, const LogLine&) = default;
  };

  std::vector<Post> posts;
  std::vector<DalCall> dal_calls;
  std::vector<LogLine> log;

  /// Whether nothing was sent on either route.
  bool empty() const { return posts.empty() && dal_calls.empty(); }
};

}  // namespace bvconn::automation
