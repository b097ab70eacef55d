#pragma once

#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "arguments.h"
#include "bvconn/automation/interface.h"
#include "connection_options.h"
#include "json_value.h"
#include "line_output.h"
#include "status.h"

namespace bvconn::tool {

/// Runs requests, one line of JSON each, on the calling thread; the forms are in
/// docs/calling-by-name.md.
class Batch {
 public:
  /// Server and session identifier come from the connection where a call does not give them.
  explicit Batch(std::unique_ptr<LineOutput> output, Connection connection = {})
      : output_(std::move(output)), out_(*output_), connection_(std::move(connection)) {}
  /// As above; each line in one piece.
  explicit Batch(WholeLines::Taker output, Connection connection = {})
      : Batch(std::make_unique<WholeLines>(std::move(output)), std::move(connection)) {}
  Batch(const Batch&) = delete;
  Batch& operator=(const Batch&) = delete;
  /// Releases the objects that are left, the first made first.
  ~Batch();

  /// Answers one request. Throws what the output does; and what fails when a part of a long answer
  /// is out already, which leaves its line cut.
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

  // Each writes an answer without its line end. Lack of memory leaves them.
  void answer_line(std::string_view line);
  void answer(const JsonValue& request);
  void call(const JsonValue& request);
  void make(const JsonValue& request);
  void get(const JsonValue& request);
  void set(const JsonValue& request);
  void release(const JsonValue& request);
  /// Takes no more memory.
  void answer_out_of_memory(std::string_view line);
  /// Begins the line anew. Of a line that is partly out already no other answer can be made: what
  /// made it end is thrown again.
  JsonOutput& begin_answer();

  Target resolve(const JsonValue& request, const char* verb);
  std::shared_ptr<void> make_object(const automation::ClassInfo& info);
  std::shared_ptr<void> property_object(const Target& target);
  std::string failure(const char* what);
  /// Notes that an answer is an error.
  std::string failed(std::string error_json);
  std::vector<Instance>::iterator find(std::string_view name);

  std::unique_ptr<LineOutput> output_;
  JsonLine out_;
  Connection connection_;
  std::vector<Instance> instances_;
  std::string_view id_;               ///< of the request that runs, as it was written
  std::exception_ptr event_failure_;  ///< of the line of an event in it
  int status_ = kDone;
  bool some_failed_ = false;
};

}  // namespace bvconn::tool
