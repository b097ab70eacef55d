#pragma once

#include <string>
#include <string_view>

#include "arguments.h"
#include "bvconn/automation/interface.h"
#include "json_output.h"

/// Answers in the form of a batch, without their ids.
namespace bvconn::tool {

void write_result(JsonOutput& out, const automation::Value& value);
void write_error(JsonOutput& out, std::string_view error_json);

/// The answer to a call that has run, without its id: result or error, then the documents and nodes
/// that it was given.
class CallAnswer {
 public:
  CallAnswer(const automation::Member& member, const CallArguments& arguments)
      : member_(member), arguments_(arguments) {}
  /// Fails with 0x80044206, before anything is written, for what is too large to be printed.
  void write_result(JsonOutput& out, const automation::Value& result) const;
  void write_error(JsonOutput& out, std::string_view error_json) const;

 private:
  void require_printable_arguments() const;
  void write_arguments(JsonOutput& out) const;

  const automation::Member& member_;
  const CallArguments& arguments_;
};

/// What is reported where a call failed with something else than an `Error`.
std::string internal_error_json(const char* what);

}  // namespace bvconn::tool
