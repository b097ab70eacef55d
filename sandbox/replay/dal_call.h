#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Calls of the data access layer as text: as JSON on the wire, and as a line of a wire file,
/// `OrderService.getSAPOrderView("O-2", true)`.
namespace bvconn::sandbox {

/// The arguments in the body of a call, as people write them: a text as it stands, the items of an
/// array with ";" between them, "" for null. Nothing for what is no such body, or for one that is
/// too large to be one.
std::optional<std::vector<std::string>> dal_arguments(const std::string& body);

struct DalCall {
  std::string object;
  std::string operation;
  std::string body;  ///< {"arguments":[…]}
};

/// Reads a line of a wire file; `request` is the text that {request} stands for. Nothing for a line
/// of another form.
std::optional<DalCall> dal_call_of(std::string_view line, const std::string& request);

}  // namespace bvconn::sandbox
