#include "bvconn/testing/seen_call.h"

#include <algorithm>

#include "bvconn/platform/error.h"
#include "bvconn/platform/soap/raw_text.h"
#include "bvconn/testing/record.h"

namespace bvconn::test {
namespace {

void collect_texts(const SoapNodes& nodes, std::vector<std::string>& texts) {
  for (const SoapNode& node : nodes) {
    const SoapNodes children = node.Nodes();
    if (children.Count() == 0) {
      texts.push_back(raw_text(node));
    } else {
      collect_texts(children, texts);
    }
  }
}

bool is_xml(const Variant& argument) {
  return argument.is(Variant::Type::kString) && argument.string().starts_with("<");
}

std::string joined(const std::string& first, const std::string& second) {
  return first + "." + second;
}

}  // namespace

std::string SeenCall::name() const {
  if (!cls.empty()) return joined(cls, operation);
  return object.empty() ? "a request" : joined(object, object_operation);
}

bool SeenCall::is(std::string_view asked_name) const {
  return (!cls.empty() && asked_name == joined(cls, operation)) ||
         (!object.empty() && asked_name == joined(object, object_operation));
}

SoapEnvelope SeenCall::envelope() const {
  const auto request = std::find_if(arguments.begin(), arguments.end(), is_xml);
  SoapEnvelope envelope = SoapEnvelope::make();
  envelope.Parse(request == arguments.end() ? text : request->string(), "");
  return envelope;
}

SoapNodes SeenCall::parameters() const {
  return envelope().Parameters();
}

std::string SeenCall::session_id() const {
  const SoapEnvelope request = envelope();
  for (const SoapNode& header : request.Headers()) {
    if (header.Name() == "userID") return raw_text(header);
  }
  return "";
}

std::vector<std::string> SeenCall::texts() const {
  std::vector<std::string> texts;
  for (const Variant& argument : arguments) {
    if (is_xml(argument)) continue;
    const std::string line = test::shown(argument);
    texts.push_back(argument.is(Variant::Type::kString) ? argument.string() : line);
  }
  try {
    collect_texts(parameters(), texts);
  } catch (const Error&) {
    // No envelope: a read on the data access layer, or a text of the application's own.
  }
  return texts;
}

std::string SeenCall::shown() const {
  std::string line = name() + " by ";
  if (route == ExchangeRoute::kDal) {
    line += joined(object, object_operation);
  } else {
    line += "SOAP to " + url;
    if (soap_action) line.append(", SOAPAction \"").append(*soap_action).append("\"");
  }
  line += ", with";
  const std::vector<std::string> all = texts();
  for (const std::string& each : all) line.append(" \"").append(each).append("\"");
  return all.empty() ? line + " nothing" : line;
}

}  // namespace bvconn::test
