#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The files that tell what goes over the wire, and what comes back: those of tests/wire, whose
/// README.md describes them, and recordings.
namespace bvconn::wire {

/// One call and all that it should do.
struct WireStep {
  int line = 0;  ///< of the file, for messages
  std::vector<std::string> given;
  std::string member;
  std::string arguments;  ///< JSON
  std::optional<std::string> url;
  std::optional<std::string> soap_action;
  std::optional<std::string> timeout;
  std::optional<std::string> user_id;
  std::optional<std::string> request;
  std::optional<std::string> text;
  std::vector<std::string> transport;
  std::vector<std::string> dal;
  std::optional<std::string> status;  ///< of a recording: the status of the reply
  std::vector<std::string> headers;   ///< of a recording: of the reply, "Name: value"
  std::optional<std::string> reply;
  std::optional<std::string> fault;
  std::optional<std::string> raw;
  std::optional<std::string> broken;
  std::optional<std::string> answer;
  std::vector<std::string> log;
  std::vector<std::string> log_file;
  std::vector<std::string> after;
};

struct WireCase {
  std::string claim;
  std::vector<WireStep> steps;
};

struct WireFile {
  std::string tail;                     ///< how an error ends, and under which name it is logged
  bool returns_text = false;            ///< the result is the text of the first parameter
  std::string disabled_by;              ///< the entry that takes the other route away
  std::vector<std::string> exceptions;  ///< the laws that do not hold, each with its reason
  std::vector<WireCase> cases;
  std::vector<std::string> problems;  ///< what is wrong with the file itself
};

WireFile read_wire_file(std::string_view text);

}  // namespace bvconn::wire
