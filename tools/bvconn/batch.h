#pragma once

#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "arguments.h"
#include "bvconn/automation/interface.h"
#include "connection_options.h"
#include "json_value.h"
#include "status.h"

namespace bvconn::tool {

/// Runs requests, one line of JSON each, on the calling thread; the forms are in
/// docs/calling-by-name.md.
class Batch {
 public:
  /// Takes one line of output, without its line end.
  using Output = std::function<void(std::string_view line)>;

  /// Server and session identifier come from the connection where a call does not give them.
  explicit Batch(Output output, Connection connection = {})
      : output_(std::move(output)), connection_(std::move(connection)) {}
  Batch(const Batch&) = delete;
  Batch& operator=(const Batch&) = delete;
  /// Releases the objects that are left, the first made first.
  ~Batch();

  /// Answers one request; never throws but for the output.
  void run(std::string_view line);

  /// kNotUnderstood once a line was not understood, kFailed once something failed that no operation
  /// may fail with.
  int status() const { return status_; }
  /// Whether an answer was an error.
  bool some_failed() const { return some_failed_; }

 private:
  struct Instance {
    std::string name;
    const automation::ClassInfo* info = nullptr;
    std::shared_ptr<void> object;
  };
  /// A member, and the object that it is asked of: null where one is to be made for the call.
  struct Target {
    const automation::ClassInfo* info = nullptr;
    const automation::Member* member = nullptr;
    std::shared_ptr<void> object;
  };

  /// The line that answers this one. Lack of memory leaves it.
  std::string answer_line(std::string_view line);
  /// Takes no more memory.
  std::string_view out_of_memory_answer(std::string_view line);
  std::string answer(const JsonValue& request);
  std::string call(const JsonValue& request);
  std::string make(const JsonValue& request);
  std::string get(const JsonValue& request);
  std::string set(const JsonValue& request);
  std::string release(const JsonValue& request);

  Target resolve(const JsonValue& request, const char* verb);
  std::shared_ptr<void> make_object(const automation::ClassInfo& info);
  std::shared_ptr<void> property_object(const Target& target);
  std::string failure(const char* what);
  /// Notes that an answer is an error.
  std::string failed(std::string error_json);
  std::vector<Instance>::iterator find(std::string_view name);

  Output output_;
  Connection connection_;
  std::vector<Instance> instances_;
  std::string_view id_;               ///< of the request that runs, as it was written
  std::string spare_;                 ///< room for an answer when there is no other
  std::exception_ptr event_failure_;  ///< of the line of an event in it
  int status_ = kDone;
  bool some_failed_ = false;
};

}  // namespace bvconn::tool
