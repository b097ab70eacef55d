#include "json_text.h"

#include <memory>
#include <variant>

#include "json_tree.h"

namespace bvconn::tool {
namespace {

struct ValueWriter {
  JsonOutput& out;

  void operator()(std::monostate) const { out.raw("null"); }
  void operator()(const Variant& value) const { TreeWriter(out, false).value(value); }
  void operator()(const StringArray& array) const { (*this)(Variant(array)); }
  void operator()(const SoapEnvelope& envelope) const {
    if (!envelope) return (*this)(std::monostate());
    out.raw(R"({"envelope":{"method":)").string(envelope.MethodName());
    out.raw(R"(,"headers":)");
    TreeWriter(out, false).list(envelope.Headers());
    out.raw(R"(,"parameters":)");
    TreeWriter(out, false).list(envelope.Parameters());
    out.raw("}}");
  }
  void operator()(const std::shared_ptr<HTTPTransport>& transport) const {
    object(transport != nullptr, "HTTPTransport");
  }
  void operator()(const XMLDocument* document) const {
    if (document == nullptr) return (*this)(std::monostate());
    out.string(document->xml());
  }
  void operator()(const std::shared_ptr<ServiceObject>& service) const {
    object(service != nullptr, service ? service->name() : "");
  }

 private:
  void object(bool is_there, std::string_view name) const {
    if (!is_there) return (*this)(std::monostate());
    out.raw(R"({"object":)").string(name).raw('}');
  }
};

struct ValueMeasure {
  std::size_t max_nodes;

  void operator()(const Variant& value) const { TreeMeasure(max_nodes).add(value); }
  void operator()(const SoapEnvelope& envelope) const {
    if (!envelope) return;
    TreeMeasure(max_nodes).add(envelope.Headers());
    TreeMeasure(max_nodes).add(envelope.Parameters());
  }
  template <class Other>
  void operator()(const Other& /*value*/) const {}
};

}  // namespace

void write_json(JsonOutput& out, const automation::Value& value) {
  std::visit(ValueWriter{out}, value);
}

void require_printable(const automation::Value& value, std::size_t max_nodes) {
  std::visit(ValueMeasure{max_nodes}, value);
}

std::string json_string(std::string_view text) {
  JsonString quoted;
  quoted.string(text);
  return quoted.take();
}

std::string json_value(const automation::Value& value, std::size_t max_nodes) {
  require_printable(value, max_nodes);
  JsonString text;
  write_json(text, value);
  return text.take();
}

std::string json_argument(const Variant& value) {
  TreeMeasure(kMaxNodes).add(value);
  JsonString text;
  TreeWriter(text, true).value(value);
  return text.take();
}

std::string json_error(const Error& error) {
  JsonString text;
  text.raw(R"({"number":)").integer(error.number);
  text.raw(R"(,"hex":)").string(hex_number(error.number));
  text.raw(R"(,"source":)").string(error.source);
  text.raw(R"(,"description":)").string(error.description);
  text.raw(R"(,"helpFile":)").string(error.helpFile);
  text.raw(R"(,"helpContext":)").integer(error.helpContext).raw('}');
  return text.take();
}

}  // namespace bvconn::tool
