#include "reply_tap.h"

#include <utility>

namespace bvconn::tool {
namespace {

class TappedTransport final : public HTTPTransport {
 public:
  TappedTransport(std::shared_ptr<HTTPTransport> inner, std::shared_ptr<TappedReply> reply)
      : inner_(std::move(inner)), reply_(std::move(reply)) {}

  void Send(std::string_view url, std::string_view text) override {
    *reply_ = {};
    inner_->Send(url, text);
  }
  std::string Receive(std::string_view encoding) override {
    std::string bytes = inner_->Receive(encoding);
    *reply_ = {.text = bytes, .came = true};
    return bytes;
  }

  void Option(std::string_view key, std::string_view value) override { inner_->Option(key, value); }
  void setProxy(std::string_view host, std::string_view port) override {
    inner_->setProxy(host, port);
  }
  void NoProxy() override { inner_->NoProxy(); }
  void SOAPAction(std::string_view value) override { inner_->SOAPAction(value); }
  void Timeout(std::int32_t milliseconds) override { inner_->Timeout(milliseconds); }
  std::string LastReply() const override { return inner_->LastReply(); }
  const WireFacts* LastWire() const override { return inner_->LastWire(); }

 private:
  std::shared_ptr<HTTPTransport> inner_;
  std::shared_ptr<TappedReply> reply_;
};

class TappedObject final : public ServiceObject {
 public:
  TappedObject(std::shared_ptr<ServiceObject> inner, std::shared_ptr<TappedReply> reply)
      : inner_(std::move(inner)), reply_(std::move(reply)) {}

  std::string invoke(std::string_view operation, std::span<const Variant> arguments,
                     bool by_name) override {
    *reply_ = {};
    std::string text = inner_->invoke(operation, arguments, by_name);
    *reply_ = {.text = text, .came = true};
    return text;
  }
  std::string_view name() const override { return inner_->name(); }
  bool offers(std::string_view interface_name) const override {
    return inner_->offers(interface_name);
  }
  const WireFacts* last_wire() const override { return inner_->last_wire(); }

 private:
  std::shared_ptr<ServiceObject> inner_;
  std::shared_ptr<TappedReply> reply_;
};

}  // namespace

platform::Platform tapped(platform::Platform inner, std::shared_ptr<TappedReply> reply) {
  platform::Platform outer = inner;
  outer.transport = [make = std::move(inner.transport), reply] {
    return std::make_shared<TappedTransport>(make(), reply);
  };
  outer.service_object = [make = std::move(inner.service_object), reply](std::string_view name) {
    return std::make_shared<TappedObject>(make(name), reply);
  };
  return outer;
}

}  // namespace bvconn::tool
