#include "bvconn/component/outside_objects.h"

#include <cstddef>
#include <utility>
#include <vector>

#include "bvconn/component/named_object.h"
#include "bvconn/component/service_operations.h"
#include "bvconn/component/shapes.h"
#include "bvconn/component/values.h"

namespace bvconn::component {
namespace {

using automation::Value;
using automation::ValueType;

Bytes bytes_of(const std::string& text) {
  const auto* first = reinterpret_cast<const std::byte*>(text.data());
  return {first, first + text.size()};
}

class TransportObject final : public NamedObject<> {
 public:
  explicit TransportObject(std::shared_ptr<HTTPTransport> transport)
      : transport_(std::move(transport)) {}

  std::string_view class_name() const noexcept override { return "HTTPTransport"; }

 private:
  enum : DispatchId { kOption = 1, kSetProxy, kNoProxy, kSOAPAction, kTimeout, kSend, kReceive };

  const MemberTable& table() const override {
    static const MemberTable kTable(
        {write_only(kOption, "Option", ValueType::kString, {required("key", ValueType::kString)}),
         method(kSetProxy, "setProxy",
                {required("host", ValueType::kString), required("port", ValueType::kString)}),
         method(kNoProxy, "NoProxy"), write_only(kSOAPAction, "SOAPAction", ValueType::kString),
         write_only(kTimeout, "Timeout", ValueType::kInt32),
         method(kSend, "Send",
                {required("url", ValueType::kString), required("text", ValueType::kString)}),
         method(kReceive, "Receive", {optional("encoding", ValueType::kString)})});
    return kTable;
  }

  OwnedVariant call(const NamedMember& member, std::span<const Value> values) override {
    switch (member.id) {
      case kSetProxy:
        transport_->setProxy(text_at(values, 0), text_at(values, 1));
        return {};
      case kNoProxy:
        transport_->NoProxy();
        return {};
      case kSend:
        transport_->Send(text_at(values, 0), text_at(values, 1));
        return {};
      default:
        return record_from_variant(Variant(bytes_of(transport_->Receive(text_at(values, 0)))));
    }
  }

  void put(const NamedMember& member, std::span<const Value> values) override {
    switch (member.id) {
      case kOption:
        return transport_->Option(text_at(values, 0), text_at(values, 1));
      case kSOAPAction:
        return transport_->SOAPAction(text_at(values, 0));
      default:
        return transport_->Timeout(variant_at(values, 0).int32());
    }
  }

  std::shared_ptr<HTTPTransport> transport_;
};

class ServiceObjectObject final : public NamedObject<> {
 public:
  explicit ServiceObjectObject(std::shared_ptr<ServiceObject> object)
      : object_(std::move(object)), table_(members_of(*object_)) {}

 private:
  // The operations are numbered behind the object's own members, by their place among those of all
  // objects, so that a number means one operation whichever object offers it.
  enum : DispatchId { kName = 1, kInvoke, kOffers, kFirstOperation };

  static MemberTable members_of(const ServiceObject& object) {
    std::vector<NamedMember> members{
        read_only(kName, "name"),
        method(kInvoke, "invoke",
               {required("operation", ValueType::kString),
                optional("arguments", ValueType::kVariant)}),
        method(kOffers, "offers", {required("interfaceName", ValueType::kString)})};
    DispatchId id = kFirstOperation;
    for (const ServiceOperation& operation : service_operations()) {
      if (operation.object == object.name() || object.offers(operation.object)) {
        members.push_back(method(id, std::string(operation.name), operation.arguments));
      }
      ++id;
    }
    return MemberTable(std::move(members));
  }

  const MemberTable& table() const override { return table_; }

  OwnedVariant call(const NamedMember& member, std::span<const Value> values) override {
    switch (member.id) {
      case kName:
        return record_from_variant(Variant(object_->name()));
      case kInvoke:
        return invoke_operation(text_at(values, 0), variant_at(values, 1));
      case kOffers:
        return record_from_variant(Variant(object_->offers(text_at(values, 0))));
      default:
        return call_operation(member.name, values);
    }
  }

  void put(const NamedMember& /*member*/, std::span<const Value> /*values*/) override {}

  // A host's caller looks every operation up at run time.
  OwnedVariant call_operation(const std::string& operation, std::span<const Value> values) {
    std::vector<Variant> given;
    for (std::size_t place = 0; place < values.size(); ++place) {
      given.push_back(variant_at(values, place));
    }
    return record_from_variant(Variant(object_->invoke(operation, given, true)));
  }

  // Any operation, also one that no connector calls; the arguments come as one array.
  OwnedVariant invoke_operation(const std::string& operation, const Variant& arguments) {
    static const std::vector<Variant> kNone;
    const bool none = arguments.missing() || arguments.empty();
    const std::vector<Variant>& given = none ? kNone : arguments.array().items();
    return record_from_variant(Variant(object_->invoke(operation, given, true)));
  }

  std::shared_ptr<ServiceObject> object_;
  MemberTable table_;
};

}  // namespace

IDispatchAbi* make_transport_object(const std::shared_ptr<HTTPTransport>& transport) {
  return transport ? new TransportObject(transport) : nullptr;
}

IDispatchAbi* make_service_object_object(const std::shared_ptr<ServiceObject>& object) {
  return object ? new ServiceObjectObject(object) : nullptr;
}

}  // namespace bvconn::component
