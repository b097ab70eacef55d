#pragma once

#include <concepts>
#include <string>
#include <string_view>

#include "bvconn/core/joined_codes.h"
#include "bvconn/operation/method_frame.h"

/// The frames of `BVSearchConnector`'s operations, and what their blocks and bodies are made of.
namespace bvconn::search {

inline constexpr std::string_view kClass = "BVSearchConnector";

/// No line of the operation's own.
constexpr LogBlock silent(std::string_view method) {
  return {.cls = kClass, .method = method, .form = LogForm::kNone};
}
constexpr LogBlock with_brackets(std::string_view method) {
  return {.cls = kClass, .method = method, .brackets = true};
}

// Positional parameters: the server tells them apart by place.

inline void add_positional(SoapNodes& parameters, std::string_view text) {
  parameters.Create("param", text, "", "", "");
}
template <std::same_as<bool> B>
void add_positional(SoapNodes& parameters, B flag) {
  parameters.Create("param_bool", flag, "", "", "");
}
inline void add_positional(SoapNodes& parameters, const StringArray& codes) {
  parameters.Create("param", Variant(codes), "", "", "");
}

/// Adds the values in this order: texts and whole arrays as "param", booleans as "param_bool".
template <class... Values>
void positional(SoapNodes& parameters, const Values&... values) {
  (add_positional(parameters, values), ...);
}

inline constexpr auto no_parameters = [](SoapNodes&) {};

/// The codes as the data access layer takes them; 9 for an array that was never allocated.
inline std::string joined(const StringArray& codes) {
  return codes.upper_bound() < 0 ? std::string() : joined_codes(codes.items());
}

/// Positional parameters, no encoding style, the object's own catalogues. Without `dal` the
/// operation has no data access layer route.
template <class Fill>
SoapNode PositionalSearchFrame(const Operation& operation, const Catalogues& catalogues,
                               std::string_view aSessionID, std::string_view aServerURL,
                               const Fill& fill) {
  return ConnectorMethodFrame(operation, catalogues, [&](Call& call) {
    fill(call.envelope(aSessionID));
    return call.send(aServerURL).first();
  });
}
template <class Fill, class Dal>
SoapNode PositionalSearchFrame(const Operation& operation, const Catalogues& catalogues,
                               std::string_view aSessionID, std::string_view aServerURL,
                               const Fill& fill, const Dal& dal) {
  return ConnectorMethodFrame(operation, catalogues, [&](Call& call) {
    if (call.takes_dal()) return call.parse(dal(call.dal())).first();
    fill(call.envelope(aSessionID));
    return call.send(aServerURL).first();
  });
}

/// The body of the frame below.
template <class Fill, class Dal>
SoapNode named_search(Call& call, std::string_view aSessionID, std::string_view aServerURL,
                      const Fill& fill, const Dal& dal) {
  if (call.takes_dal()) return call.parse(dal(call.dal())).first();
  fill(call.envelope(aSessionID, kSoapEncoding));
  return call.send(aServerURL).first();
}

/// Named parameters, an encoding style, the session's catalogues.
template <class Fill>
SoapNode NamedSearchFrame(const Operation& operation, std::string_view aSessionID,
                          std::string_view aServerURL, const Fill& fill) {
  return ConnectorMethodFrame(operation, [&](Call& call) {
    fill(call.envelope(aSessionID, kSoapEncoding));
    return call.send(aServerURL).first();
  });
}
template <class Fill, class Dal>
SoapNode NamedSearchFrame(const Operation& operation, std::string_view aSessionID,
                          std::string_view aServerURL, const Fill& fill, const Dal& dal) {
  return ConnectorMethodFrame(
      operation, [&](Call& call) { return named_search(call, aSessionID, aServerURL, fill, dal); });
}

/// The data access layer alone: no test of the switch, no fallback.
template <class Dal>
SoapNode DalOnlySearchFrame(const Operation& operation, const Catalogues& catalogues,
                            const Dal& dal) {
  return ConnectorMethodFrame(operation, catalogues,
                              [&](Call& call) { return call.parse(dal(call.dal())).first(); });
}

/// The same for the e-mail forms: the answer is read, so that a fault in it is raised, and nothing
/// is taken from it.
template <class Dal>
SoapNode DalOnlyExportFrame(const Operation& operation, const Catalogues& catalogues,
                            const Dal& dal) {
  return ConnectorMethodFrame(operation, catalogues, [&](Call& call) {
    call.parse(dal(call.dal()));
    return SoapNode();
  });
}

}  // namespace bvconn::search
