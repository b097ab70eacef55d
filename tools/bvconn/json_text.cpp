#include "json_text.h"

#include <cmath>
#include <cstddef>
#include <utility>
#include <variant>
#include <vector>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/shown_value.h"
#include "bvconn/platform/soap/typed_text.h"

namespace bvconn::tool {
namespace {

constexpr std::size_t kMaxText = std::size_t{1} << 30;

std::string number_text(double value) {
  // JSON has no such numbers.
  return std::isfinite(value) ? Json(value).dump() : json_string(conversions::double_text(value));
}

/// Writes values without recursion, so that no reply is too deep for it.
class Writer {
 public:
  Writer(bool tells_missing, std::size_t max_nodes)
      : tells_missing_(tells_missing), max_nodes_(max_nodes) {}

  std::string write(Variant value) {
    push(std::move(value));
    run();
    return std::move(out_);
  }
  std::string write_list(const SoapNodes& nodes) {
    push_list(nodes, "]");
    run();
    return std::move(out_);
  }

 private:
  struct NodeBody {
    SoapNode node;
  };
  /// What is still to be written, the next on top.
  using Item = std::variant<std::string, Variant, NodeBody>;

  template <class T>
  void push(T&& item) {
    work_.emplace_back(std::forward<T>(item));
  }

  void run() {
    while (!work_.empty()) {
      if (nodes_ > max_nodes_ || out_.size() > kMaxText) {
        throw Error(error_numbers::kSoapLimit, "bvconn", "The answer is too large to be printed");
      }
      const Item item = std::move(work_.back());
      work_.pop_back();
      if (const auto* text = std::get_if<std::string>(&item)) {
        out_.append(*text);
      } else if (const auto* value = std::get_if<Variant>(&item)) {
        write_value(*value);
      } else {
        write_node(std::get<NodeBody>(item).node);
      }
    }
  }

  /// '[', the nodes, ']' and what follows.
  void push_list(const SoapNodes& nodes, std::string tail) {
    push(std::move(tail));
    for (std::size_t index = nodes.Count(); index > 0; --index) {
      push(NodeBody{nodes.Item(index - 1)});
      push(std::string(index > 1 ? "," : ""));
    }
    push(std::string("["));
  }

  void write_node(const SoapNode& node) {
    ++nodes_;
    auto [value, unreadable] = detail::shown_value(node);
    SoapNodes children = node.Nodes();
    if (value.is(Variant::Type::kNode)) {
      // A node that wraps another one has that one's content on the wire.
      if (children.Count() == 0 && value.node()) {
        children = value.node().Nodes();
      }
      value = Variant();
    }
    std::string tail = "]";
    if (node.nil()) tail.append(",\"nil\":true");
    if (!unreadable.empty()) tail.append(",\"unreadable\":").append(json_string(unreadable));
    if (const std::string name_space = node.Namespace(); !name_space.empty()) {
      tail.append(",\"namespace\":").append(json_string(name_space));
    }
    tail.push_back('}');
    out_.append("{\"name\":").append(json_string(node.Name())).append(",\"value\":");
    push_list(children, std::move(tail));
    push(std::string(",\"nodes\":"));
    push(std::move(value));
  }

  void write_value(const Variant& value) {
    using Type = Variant::Type;
    switch (value.type()) {
      case Type::kEmpty:
        out_.append("null");
        break;
      case Type::kMissing:
        out_.append(tells_missing_ ? "{\"missing\":true}" : "null");
        break;
      case Type::kBoolean:
        out_.append(value.boolean() ? "true" : "false");
        break;
      case Type::kInt16:
        out_.append(conversions::integer_text(value.int16()));
        break;
      case Type::kInt32:
        out_.append(conversions::integer_text(value.int32()));
        break;
      case Type::kInt64:
        out_.append(conversions::integer_text(value.int64()));
        break;
      case Type::kDouble:
        out_.append(number_text(value.number()));
        break;
      case Type::kString:
        out_.append(json_string(value.string()));
        break;
      case Type::kDate:
        out_.append("{\"date\":").append(json_string(conversions::iso_date_text(value.date())));
        out_.push_back('}');
        break;
      case Type::kBytes:
        out_.append(json_string(detail::to_base64(value.bytes())));
        break;
      case Type::kArray:
        write_array(value.array());
        break;
      case Type::kNode:
        write_reference(value.node());
        break;
      case Type::kQualifiedName:
        out_.append(json_string(value.qualified_name().local));
        break;
    }
  }

  void write_array(const VariantArray& array) {
    if (!array.allocated()) {
      out_.append("null");
      return;
    }
    const auto& items = array.items();
    push(std::string("]"));
    for (std::size_t index = items.size(); index > 0; --index) {
      push(items[index - 1]);
      push(std::string(index > 1 ? "," : ""));
    }
    push(std::string("["));
  }

  void write_reference(const SoapNode& node) {
    if (!node) {
      out_.append("null");
      return;
    }
    push(std::string("}"));
    push(NodeBody{node});
    push(std::string("{\"node\":"));
  }

  bool tells_missing_;
  std::size_t max_nodes_;
  std::string out_;
  std::vector<Item> work_;
  std::size_t nodes_ = 0;
};

std::string object_text(std::string_view name) {
  return "{\"object\":" + json_string(name) + "}";
}

std::string envelope_text(const SoapEnvelope& envelope, std::size_t max_nodes) {
  std::string text = "{\"envelope\":{\"method\":" + json_string(envelope.MethodName());
  text.append(",\"headers\":").append(Writer(false, max_nodes).write_list(envelope.Headers()));
  text.append(",\"parameters\":")
      .append(Writer(false, max_nodes).write_list(envelope.Parameters()));
  return text.append("}}");
}

struct ValueText {
  std::size_t max_nodes;

  std::string operator()(std::monostate) const { return "null"; }
  std::string operator()(const Variant& value) const {
    return Writer(false, max_nodes).write(value);
  }
  std::string operator()(const StringArray& array) const {
    return Writer(false, max_nodes).write(Variant(array));
  }
  std::string operator()(const SoapEnvelope& envelope) const {
    return envelope ? envelope_text(envelope, max_nodes) : "null";
  }
  std::string operator()(const std::shared_ptr<HTTPTransport>& transport) const {
    return transport ? object_text("HTTPTransport") : "null";
  }
  std::string operator()(const XMLDocument* document) const {
    return document != nullptr ? json_string(document->xml()) : "null";
  }
  std::string operator()(const std::shared_ptr<ServiceObject>& object) const {
    return object ? object_text(object->name()) : "null";
  }
};

}  // namespace

std::string json_string(std::string_view text) {
  return Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string json_value(const automation::Value& value, std::size_t max_nodes) {
  return std::visit(ValueText{max_nodes}, value);
}

std::string json_argument(const Variant& value) {
  return Writer(true, kMaxNodes).write(value);
}

std::string json_error(const Error& error) {
  std::string text = "{\"number\":" + conversions::integer_text(error.number);
  text.append(",\"hex\":").append(json_string(hex_number(error.number)));
  text.append(",\"source\":").append(json_string(error.source));
  text.append(",\"description\":").append(json_string(error.description));
  text.append(",\"helpFile\":").append(json_string(error.helpFile));
  text.append(",\"helpContext\":").append(conversions::integer_text(error.helpContext));
  return text.append("}");
}

}  // namespace bvconn::tool
