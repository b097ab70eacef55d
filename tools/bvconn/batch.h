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
#include "status.h"

namespace bvconn::tool {

/// Runs requests, one line of JSON each, on the calling thread; the forms are in
/// docs/calling-by-name.md.
class Batch {
 public:
  /// Takes one line of output, without its line end.
  using Output = std::function<void(std::string_view line)>;

  explicit Batch(Output output) : output_(std::move(output)) {}
  Batch(const Batch&) = delete;
  Batch& operator=(const Batch&) = delete;
  /// Releases the objects that are left, the first made first.
  ~Batch();

  /// Answers one request; never throws but for the output.
  void run(std::string_view line);

  /// kNotUnderstood once a line was not understood, kFailed once something failed that no operation
  /// may fail with.
  int status() const { return status_; }

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

  std::string answer(const Json& request);
  std::string call(const Json& request);
  std::string make(const Json& request);
  std::string get(const Json& request);
  std::string set(const Json& request);
  std::string release(const Json& request);

  Target resolve(const Json& request, const char* verb);
  std::shared_ptr<void> make_object(const automation::ClassInfo& info);
  std::shared_ptr<void> property_object(const Target& target);
  std::string failure(const char* what);
  std::vector<Instance>::iterator find(std::string_view name);

  Output output_;
  std::vector<Instance> instances_;
  std::string id_;                    ///< of the request that runs, as it was written
  std::exception_ptr event_failure_;  ///< of the line of an event in it
  int status_ = kDone;
};

/// The text of a member of a JSON object as it was written; "null" where there is none. The object
/// must be well-formed.
std::string raw_member(std::string_view object, std::string_view key);

/// The answer to a call that has run, without its id: result or error, then the documents and nodes
/// that it was given.
class CallAnswer {
 public:
  CallAnswer(const automation::Member& member, const CallArguments& arguments)
      : member_(member), arguments_(arguments) {}
  std::string with_result(const automation::Value& result) const;
  std::string with_error(const std::string& error_json) const;

 private:
  std::string finish(std::string text) const;

  const automation::Member& member_;
  const CallArguments& arguments_;
};

/// What is reported where a call failed with something else than an `Error`.
std::string internal_error_json(const char* what);

}  // namespace bvconn::tool
