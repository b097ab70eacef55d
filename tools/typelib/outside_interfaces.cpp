#include "members.h"

namespace bvconn::typelib {
namespace {

constexpr std::int32_t kDefaultMember = 0;
constexpr std::int32_t kNewEnumerator = -4;

TypedArgument required(std::string name, std::string type) {
  return {.name = std::move(name), .type = std::move(type)};
}
TypedArgument text(std::string name) {
  return required(std::move(name), "BSTR");
}
TypedArgument optional_text(std::string name) {
  return {.name = std::move(name), .type = "BSTR", .optional = true, .default_value = "\"\""};
}
TypedArgument optional_variant(std::string name) {
  return {.name = std::move(name), .type = "VARIANT", .optional = true};
}

TypedMember call(std::int32_t id, std::string name, std::string result,
                 std::vector<TypedArgument> arguments = {}) {
  return {.id = id,
          .name = std::move(name),
          .result = std::move(result),
          .arguments = std::move(arguments)};
}
TypedMember read(std::int32_t id, std::string name, std::string type) {
  return {.id = id,
          .access = Access::kGet,
          .name = std::move(name),
          .result = std::move(type),
          .arguments = {}};
}
TypedMember write(std::int32_t id, std::string name, std::vector<TypedArgument> arguments) {
  return {
      .id = id, .access = Access::kPut, .name = std::move(name), .arguments = std::move(arguments)};
}

const std::string kNode = "_SoapNode *";
const std::string kNodes = "_SoapNodes *";

std::vector<TypedMember> node_members() {
  // A node as value is set by reference in languages that tell objects from values.
  TypedMember by_reference = write(4, "Value", {required("value", "IDispatch *")});
  by_reference.access = Access::kPutReference;
  return {read(1, "Name", "BSTR"),
          write(1, "Name", {text("value")}),
          read(2, "Namespace", "BSTR"),
          read(3, "Type", "BSTR"),
          read(4, "Value", "VARIANT"),
          write(4, "Value", {required("value", "VARIANT")}),
          by_reference,
          read(5, "Nodes", kNodes),
          read(6, "nil", "VARIANT_BOOL")};
}

std::vector<TypedMember> nodes_members() {
  TypedMember enumerator = read(kNewEnumerator, "_NewEnum", "IUnknown *");
  enumerator.hidden = true;
  TypedMember item = read(kDefaultMember, "Item", kNode);
  item.arguments = {required("index", "long")};
  return {read(1, "Count", "long"),
          item,
          enumerator,
          call(2, "ItemByName", kNode, {text("name"), optional_text("namespace")}),
          call(3, "Create", kNode,
               {text("name"), optional_variant("value"), optional_text("namespace"),
                optional_text("type"), optional_text("typeNamespace")}),
          call(4, "Append", "void", {required("node", "IDispatch *")})};
}

std::vector<TypedMember> envelope_members() {
  return {read(1, "MethodName", "BSTR"),
          read(2, "EncodingStyle", "BSTR"),
          write(2, "EncodingStyle", {text("value")}),
          read(3, "Headers", kNodes),
          read(4, "Parameters", kNodes),
          call(5, "SetMethod", "void", {text("name"), text("namespace")}),
          call(6, "Serialize", "BSTR"),
          call(7, "Parse", "void", {required("data", "VARIANT"), optional_text("encoding")})};
}

std::vector<TypedMember> transport_members() {
  return {write(1, "Option", {text("key"), text("value")}),
          call(2, "setProxy", "void", {text("host"), text("port")}),
          call(3, "NoProxy", "void"),
          write(4, "SOAPAction", {text("value")}),
          write(5, "Timeout", {required("value", "long")}),
          call(6, "Send", "void", {text("url"), text("text")}),
          call(7, "Receive", "SAFEARRAY(unsigned char)", {optional_text("encoding")})};
}

std::vector<TypedMember> document_members() {
  return {call(1, "load", "VARIANT_BOOL", {required("data", "VARIANT")}), read(2, "xml", "BSTR"),
          read(3, "documentElement", kNode)};
}

std::vector<TypedMember> support_members() {
  return {read(1, "LastExchange", "BSTR"),
          call(2, "Explain", "BSTR", {required("number", "VARIANT"), optional_text("description")}),
          read(3, "Version", "BSTR")};
}

TypedInterface interface_of(std::string name, std::vector<TypedMember> members) {
  const component::Guid id = component::interface_id_of(name);
  return {.name = std::move(name), .id = id, .members = std::move(members)};
}

}  // namespace

std::vector<TypedInterface> outside_interfaces() {
  return {interface_of("SoapNode", node_members()),
          interface_of("XMLDocument", document_members()),
          interface_of("Support", support_members()),
          interface_of("SoapNodes", nodes_members()),
          interface_of("SoapEnvelope", envelope_members()),
          interface_of("HTTPTransport", transport_members())};
}

}  // namespace bvconn::typelib
