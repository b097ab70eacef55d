#include "bvconn/component/soap_objects.h"

#include <limits>
#include <string>
#include <utility>

#include "bvconn/component/enumerator.h"
#include "bvconn/component/handles.h"
#include "bvconn/component/named_object.h"
#include "bvconn/component/shapes.h"
#include "bvconn/component/values.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/xml_document.h"

namespace bvconn::component {
namespace {

using automation::Value;
using automation::ValueType;

OwnedVariant record_from_count(std::size_t count) {
  constexpr auto kMax = static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max());
  return record_from_variant(Variant(static_cast<std::int32_t>(std::min(count, kMax))));
}

// What a host passes as a document or an envelope: bytes, or text, which is UTF-8 here.
std::string document_bytes(const Variant& value) {
  if (!value.is(Variant::Type::kBytes)) return to_text(value);
  const Bytes& bytes = value.bytes();
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

class NodeObject final : public NamedObject<INodeHandleAbi> {
 public:
  explicit NodeObject(SoapNode node) : node_(std::move(node)) {}

  std::string_view class_name() const noexcept override { return "SoapNode"; }

  Hresult BVCONN_CALL GetNode(const void* module, const void** node) noexcept override {
    if (node == nullptr) return kNullPointer;
    *node = nullptr;
    if (module != module_mark()) return kNoInterface;
    *node = &node_;
    return kOk;
  }

 private:
  enum : DispatchId { kName = 1, kNamespace, kType, kValue, kNodes, kNil };

  const MemberTable& table() const override {
    static const MemberTable kTable = [] {
      std::vector<NamedMember> members{property(kName, "Name", ValueType::kString),
                                       read_only(kNamespace, "Namespace"),
                                       read_only(kType, "Type"),
                                       property(kValue, "Value", ValueType::kVariant),
                                       read_only(kNodes, "Nodes"),
                                       read_only(kNil, "nil")};
      // A node as value is set by reference in languages that tell objects from values.
      members[kValue - 1].access |= call_flag::kPropertyPutReference;
      return MemberTable(std::move(members));
    }();
    return kTable;
  }

  OwnedVariant call(const NamedMember& member, std::span<const Value> /*values*/) override {
    switch (member.id) {
      case kName:
        return record_from_variant(node_.Name());
      case kNamespace:
        return record_from_variant(node_.Namespace());
      case kType:
        return record_from_variant(node_.Type());
      case kValue:
        return record_from_variant(node_.Value());
      case kNodes:
        return record_from_object(make_nodes_object(node_.Nodes()));
      default:
        return record_from_variant(Variant(node_.nil()));
    }
  }

  void put(const NamedMember& member, std::span<const Value> values) override {
    if (member.id == kName) {
      node_.Name(text_at(values, 0));
    } else {
      node_.Value(variant_at(values, 0));
    }
  }

  SoapNode node_;
};

struct NodeSource {
  SoapNodes nodes;

  std::size_t count() const { return nodes.Count(); }
  VariantRecord produce(std::size_t index) const {
    return record_from_object(make_node_object(nodes.Item(index))).release();
  }
  static void drop(VariantRecord& record) noexcept { clear_variant(&record); }
};

class NodesObject final : public NamedObject<> {
 public:
  explicit NodesObject(SoapNodes nodes) : nodes_(std::move(nodes)) {}

  std::string_view class_name() const noexcept override { return "SoapNodes"; }

 private:
  enum : DispatchId { kItem = kDefaultMember, kCount = 1, kItemByName, kCreate, kAppend };

  const MemberTable& table() const override {
    static const MemberTable kTable = [] {
      NamedMember item = method(kItem, "Item", {required("index", ValueType::kInt32)});
      NamedMember new_enumerator = method(kNewEnumerator, "_NewEnum");
      item.access |= call_flag::kPropertyGet;
      new_enumerator.access |= call_flag::kPropertyGet;
      return MemberTable(
          {read_only(kCount, "Count"), std::move(item),
           method(
               kItemByName, "ItemByName",
               {required("name", ValueType::kString), optional("namespace", ValueType::kString)}),
           method(kCreate, "Create",
                  {required("name", ValueType::kString), optional("value", ValueType::kVariant),
                   optional("namespace", ValueType::kString), optional("type", ValueType::kString),
                   optional("typeNamespace", ValueType::kString)}),
           method(kAppend, "Append", {required("node", ValueType::kSoapNode)}),
           std::move(new_enumerator)});
    }();
    return kTable;
  }

  OwnedVariant call(const NamedMember& member, std::span<const Value> values) override {
    switch (member.id) {
      case kItem:
        return node(item(variant_at(values, 0).int32()));
      case kCount:
        return record_from_count(nodes_.Count());
      case kItemByName:
        return node(nodes_.ItemByName(text_at(values, 0), text_at(values, 1)));
      case kCreate:
        return node(nodes_.Create(text_at(values, 0), variant_at(values, 1), text_at(values, 2),
                                  text_at(values, 3), text_at(values, 4)));
      case kAppend:
        nodes_.Append(variant_at(values, 0).node());
        return {};
      default:
        return enumeration();
    }
  }

  void put(const NamedMember& /*member*/, std::span<const Value> /*values*/) override {}

  static OwnedVariant node(const SoapNode& found) {
    return record_from_object(make_node_object(found));
  }

  SoapNode item(std::int32_t index) const {
    if (index >= 0) return nodes_.Item(static_cast<std::size_t>(index));
    throw Error(error_numbers::kNoSuchNode, "SoapNodes", "There is no node at a negative index");
  }

  OwnedVariant enumeration() const {
    OwnedVariant record;
    record->value.unknown =
        new Enumerator<IEnumVariantAbi, VariantRecord, NodeSource>(NodeSource{nodes_});
    record->type = variant_type::kUnknown;
    return record;
  }

  SoapNodes nodes_;
};

class EnvelopeObject final : public NamedObject<> {
 public:
  explicit EnvelopeObject(SoapEnvelope envelope) : envelope_(std::move(envelope)) {}

  std::string_view class_name() const noexcept override { return "SoapEnvelope"; }

 private:
  enum : DispatchId {
    kMethodName = 1,
    kEncodingStyle,
    kHeaders,
    kParameters,
    kSetMethod,
    kSerialize,
    kParse
  };

  const MemberTable& table() const override {
    static const MemberTable kTable(
        {read_only(kMethodName, "MethodName"),
         property(kEncodingStyle, "EncodingStyle", ValueType::kString),
         read_only(kHeaders, "Headers"), read_only(kParameters, "Parameters"),
         method(kSetMethod, "SetMethod",
                {required("name", ValueType::kString), required("namespace", ValueType::kString)}),
         method(kSerialize, "Serialize"),
         method(
             kParse, "Parse",
             {required("data", ValueType::kVariant), optional("encoding", ValueType::kString)})});
    return kTable;
  }

  OwnedVariant call(const NamedMember& member, std::span<const Value> values) override {
    switch (member.id) {
      case kMethodName:
        return record_from_variant(envelope_.MethodName());
      case kEncodingStyle:
        return record_from_variant(envelope_.EncodingStyle());
      case kHeaders:
        return record_from_object(make_nodes_object(envelope_.Headers()));
      case kParameters:
        return record_from_object(make_nodes_object(envelope_.Parameters()));
      case kSetMethod:
        envelope_.SetMethod(text_at(values, 0), text_at(values, 1));
        return {};
      case kSerialize:
        return record_from_variant(envelope_.Serialize());
      default:
        parse(variant_at(values, 0), text_at(values, 1));
        return {};
    }
  }

  void put(const NamedMember& /*member*/, std::span<const Value> values) override {
    envelope_.EncodingStyle(text_at(values, 0));
  }

  void parse(const Variant& data, const std::string& encoding) const {
    // Text was UTF-16 on its way in, whatever its declaration says.
    const bool is_bytes = data.is(Variant::Type::kBytes);
    envelope_.Parse(document_bytes(data), is_bytes ? encoding : "UTF-8");
  }

  SoapEnvelope envelope_;
};

class DocumentObject final : public NamedObject<IDocumentHandleAbi> {
 public:
  std::string_view class_name() const noexcept override { return "XMLDocument"; }

  Hresult BVCONN_CALL GetDocument(const void* module, void** document) noexcept override {
    if (document == nullptr) return kNullPointer;
    *document = nullptr;
    if (module != module_mark()) return kNoInterface;
    *document = &document_;
    return kOk;
  }

 private:
  enum : DispatchId { kLoad = 1, kXml, kDocumentElement };

  const MemberTable& table() const override {
    static const MemberTable kTable({method(kLoad, "load", {required("data", ValueType::kVariant)}),
                                     read_only(kXml, "xml"),
                                     read_only(kDocumentElement, "documentElement")});
    return kTable;
  }

  OwnedVariant call(const NamedMember& member, std::span<const Value> values) override {
    switch (member.id) {
      case kLoad:
        return record_from_variant(Variant(document_.load(document_bytes(variant_at(values, 0)))));
      case kXml:
        return record_from_variant(document_.xml());
      default:
        return record_from_object(make_node_object(document_.documentElement()));
    }
  }

  void put(const NamedMember& /*member*/, std::span<const Value> /*values*/) override {}

  XMLDocument document_;
};

}  // namespace

const void* module_mark() noexcept {
  static const char kMark = 0;
  return &kMark;
}

std::optional<SoapNode> own_node(IUnknownAbi* object) {
  if (object == nullptr) return SoapNode();
  const auto handle = query<INodeHandleAbi>(object);
  const void* node = nullptr;
  if (!handle || !succeeded(handle->GetNode(module_mark(), &node))) return std::nullopt;
  return *static_cast<const SoapNode*>(node);
}

IDispatchAbi* make_node_object(const SoapNode& node) {
  return node ? new NodeObject(node) : nullptr;
}

IDispatchAbi* make_nodes_object(const SoapNodes& nodes) {
  return new NodesObject(nodes);
}

IDispatchAbi* make_envelope_object(const SoapEnvelope& envelope) {
  return envelope ? new EnvelopeObject(envelope) : nullptr;
}

IDispatchAbi* make_document_object() {
  return new DocumentObject();
}

}  // namespace bvconn::component
