#pragma once

#include <string>

#include "arguments.h"
#include "bvconn/automation/interface.h"

/// Answers in the form of a batch, without their ids.
namespace bvconn::tool {

std::string result_text(const automation::Value& value);
std::string error_text(const std::string& error_json);

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
