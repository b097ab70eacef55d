#pragma once

#include <concepts>
#include <nlohmann/json.hpp>
#include <string>

#include <soapH.h>

/// What the services note of each request, one line of JSON: the kind of a value is that which the
/// stack read it into.
namespace notes {

using Json = nlohmann::json;
using Text = char*;

/// A text that lives as long as the request.
Text text(soap* context, const std::string& words);

/// A value as the notes show it.
Json shown(const char* text);
Json shown(double value);
Json shown(const Strings* list);
Json shown(const soap_dom_element* element);
template <std::integral Value>
Json shown(Value value) {
  return value;
}
inline Json shown(const Json& json) {
  return json;
}

/// Adds a line about this request to the file; the function's name tells method and service.
void note(const soap* context, const std::string& function, const Json& parameters);

/// Notes the parameters, and gives back a text that says that the method was called.
template <typename... Parameters>
int done(soap* context, const std::string& function, Text& result,
         const Parameters&... parameters) {
  note(context, function, Json::array({shown(parameters)...}));
  const std::size_t end = function.find("__");
  const std::string method = end == std::string::npos ? function : function.substr(end + 2);
  result = text(context, method + " done");
  return SOAP_OK;
}

}  // namespace notes
