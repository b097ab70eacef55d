#include "bvconn/testing/record.h"

namespace bvconn::test {

std::string envelope_text(std::string_view method, std::string_view parameters) {
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>"
      "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\""
      " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
      " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"><e:Body><m:";
  text.append(method).append(" xmlns:m=\"urn:test\">").append(parameters);
  return text.append("</m:").append(method).append("></e:Body></e:Envelope>");
}

std::string fault_text(std::string_view code, std::string_view text) {
  std::string envelope =
      "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\"><e:Body><e:Fault>"
      "<faultcode>";
  envelope.append(code).append("</faultcode><faultstring>").append(text);
  return envelope.append("</faultstring></e:Fault></e:Body></e:Envelope>");
}

std::string shown(const Variant& value) {
  switch (value.type()) {
    case Variant::Type::kEmpty:
      return "empty";
    case Variant::Type::kMissing:
      return "missing";
    case Variant::Type::kString:
      return "\"" + value.string() + "\"";
    case Variant::Type::kBoolean:
      return value.boolean() ? "true" : "false";
    case Variant::Type::kInt32:
      return std::to_string(value.int32());
    case Variant::Type::kBytes:
    case Variant::Type::kArray:
    case Variant::Type::kNode:
      return std::string(type_name(value.type()));
    default:
      return std::string(type_name(value.type())) + " " + to_text(value);
  }
}

}  // namespace bvconn::test
