#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "bvconn/automation/interface.h"
#include "bvconn/observation/sightings.h"
#include "bvconn/platform/export.h"

/// How the operations go about their work, as data: what they log, how they fail, when they ask the
/// data access layer. As with the requests none of it is written down; each operation is run.
namespace bvconn::automation {

/// How an operation ends on one of the routes when something goes wrong there.
struct ObservedFailures {
  /// What is left of an error that the way to the server raises with all its values.
  struct Kept {
    bool number = false;
    bool source = false;
    bool description = false;
    bool help = false;  ///< file and context
  };
  /// Nothing where the operation returns as if nothing had happened.
  std::optional<Kept> broken;

  struct Fault {
    std::int32_t number = 0;
    bool server_text = false;  ///< the description is the server's text
  };
  /// What a fault leaves as whose code means nothing to the operation; nothing where it raises
  /// none.
  std::optional<Fault> fault;
  /// The fault codes that leave as another number, in ascending order.
  std::map<std::int32_t, std::int32_t> codes;

  /// The lines about an error that are the operation's own.
  std::vector<Sightings::LogLine> log;
};

/// When an operation asks the data access layer.
struct ObservedCondition {
  bool needs_route = false;  ///< `UsingTorvexDAL`
  bool needs_save = false;   ///< `UseDALSave`
  /// The entries of the disabled methods that keep it from doing so, "service.method"; several
  /// where a text among the arguments decides which one counts.
  std::vector<std::string> disabled_by;
};

struct ObservedConduct {
  /// The operation's own lines of a call that succeeds, by SOAP where it has that route.
  std::vector<Sightings::LogLine> log;
  /// Nothing for a route that the operation has not.
  std::optional<ObservedFailures> soap;
  std::optional<ObservedFailures> dal;
  std::optional<ObservedCondition> condition;
};

/// Observes one operation. It runs on a thread of its own, and while it does the process's platform
/// is replaced: no other thread may be inside the library.
BVCONN_EXPORT ObservedConduct observe_conduct(const ClassInfo& info, const Member& operation);

}  // namespace bvconn::automation
