#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "support/error_of.h"

namespace bvconn::soap_test {

/// A reply as servers send it, around the content of its Body.
inline std::string reply_text(std::string_view body) {
  std::string text =
      "<?xml version='1.0' encoding='UTF-8'?>"
      "<soapenv:Envelope xmlns:soapenv='http://schemas.xmlsoap.org/soap/envelope/'"
      " xmlns:soapenc='http://schemas.xmlsoap.org/soap/encoding/'"
      " xmlns:xsd='http://www.w3.org/2001/XMLSchema'"
      " xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'><soapenv:Body>";
  text += body;
  text += "</soapenv:Body></soapenv:Envelope>";
  return text;
}

inline SoapEnvelope parsed(std::string_view body) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parse(reply_text(body), "");
  return envelope;
}

/// The first parameter of a reply whose method element has this content.
inline SoapNode first_parameter(std::string_view content) {
  const std::string body = "<getResponse>" + std::string(content) + "</getResponse>";
  return parsed(body).Parameters().Item(0);
}

/// The text of the method element of a request, between its tags.
inline std::string parameters_text(const SoapEnvelope& envelope) {
  envelope.SetMethod("op", "");
  const std::string text = envelope.Serialize();
  constexpr std::string_view kStart = "<SOAP-ENV:Body><op>";
  constexpr std::string_view kEnd = "</op></SOAP-ENV:Body></SOAP-ENV:Envelope>";
  const std::size_t start = text.find(kStart);
  if (start == std::string::npos || !text.ends_with(kEnd)) return "no parameters: " + text;
  const std::size_t begin = start + kStart.size();
  return text.substr(begin, text.size() - kEnd.size() - begin);
}

/// What `Create` with this value writes, as the parameter "p".
inline std::string written(const Variant& value) {
  const SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parameters().Create("p", value);
  return parameters_text(envelope);
}

/// Names of a list, for comparison: "a b c".
inline std::string names_of(const SoapNodes& nodes) {
  std::string names;
  for (const SoapNode& node : nodes) {
    if (!names.empty()) names += ' ';
    names += node.Name();
  }
  return names;
}

}  // namespace bvconn::soap_test
