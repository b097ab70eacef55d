#include "bvconn/component/outside_objects.h"

#include <gtest/gtest.h>

#include <vector>

#include "bvconn/component/memory.h"
#include "component/host.h"

namespace bvconn::component {
namespace {

namespace vt = variant_type;
using test::Held;
using test::HostString;
using test::Outcome;
using Lines = std::vector<std::string>;

class NotingTransport final : public HTTPTransport {
 public:
  explicit NotingTransport(Lines& lines) : lines_(lines) {}

  void Option(std::string_view key, std::string_view value) override { note("Option", key, value); }
  void setProxy(std::string_view host, std::string_view port) override {
    note("setProxy", host, port);
  }
  void NoProxy() override { note("NoProxy"); }
  void SOAPAction(std::string_view value) override { note("SOAPAction", value); }
  void Timeout(std::int32_t milliseconds) override {
    note("Timeout", std::to_string(milliseconds));
  }
  void Send(std::string_view url, std::string_view text) override { note("Send", url, text); }
  std::string Receive(std::string_view encoding) override {
    note("Receive", encoding);
    return "\xC3\xA9";
  }

 private:
  void note(std::string_view what, std::string_view first = {}, std::string_view second = {}) {
    lines_.push_back(std::string(what).append("|").append(first).append("|").append(second));
  }

  Lines& lines_;
};

TEST(TransportByName, PassesEachOperationOn) {
  Lines lines;
  Held<IDispatchAbi> object(make_transport_object(std::make_shared<NotingTransport>(lines)));
  HostString a(u"first");
  HostString b(u"second");
  const VariantRecord first = test::of_string(a);
  const VariantRecord second = test::of_string(b);
  EXPECT_EQ(test::put(*object, u"Option", second, {first}).result, kOk);
  EXPECT_EQ(test::call(*object, u"setProxy", {first, second}).result, kOk);
  EXPECT_EQ(test::call(*object, u"NoProxy").result, kOk);
  EXPECT_EQ(test::put(*object, u"SOAPAction", first).result, kOk);
  EXPECT_EQ(test::put(*object, u"Timeout", test::of_int32(-1)).result, kOk);
  EXPECT_EQ(test::call(*object, u"Send", {first, second}).result, kOk);
  EXPECT_EQ(test::call(*object, u"Receive", {first}).result, kOk);
  EXPECT_EQ(lines,
            (Lines{"Option|first|second", "setProxy|first|second", "NoProxy||", "SOAPAction|first|",
                   "Timeout|-1|", "Send|first|second", "Receive|first|"}));
}

TEST(TransportByName, WhatIsReceivedComesAsBytes) {
  Lines lines;
  Held<IDispatchAbi> object(make_transport_object(std::make_shared<NotingTransport>(lines)));
  const Outcome outcome = test::call(*object, u"Receive");
  ASSERT_EQ(outcome.value.type, vt::kArray | vt::kUint8);
  ASSERT_EQ(outcome.value.value.array->bounds[0].count, 2u);
  const auto* bytes = static_cast<const unsigned char*>(outcome.value.value.array->data);
  EXPECT_EQ(bytes[0], 0xC3);
  EXPECT_EQ(bytes[1], 0xA9);
}

class NotingService final : public ServiceObject {
 public:
  explicit NotingService(Lines& lines) : lines_(lines) {}

  std::string_view name() const override { return "SearchService"; }
  std::string invoke(std::string_view operation, std::span<const Variant> arguments,
                     bool by_name) override {
    std::string line(operation);
    for (const Variant& argument : arguments) line += "|" + to_text(argument);
    lines_.push_back(line + (by_name ? "|by name" : ""));
    return "<answer/>";
  }
  bool offers(std::string_view interface_name) const override {
    return interface_name == "HeartBeatService";
  }

 private:
  Lines& lines_;
};

TEST(ServiceObjectByName, IsAskedAndCalled) {
  Lines lines;
  Held<IDispatchAbi> object(make_service_object_object(std::make_shared<NotingService>(lines)));
  EXPECT_EQ(test::get(*object, u"name").text(), u"SearchService");
  HostString offered(u"HeartBeatService");
  HostString other(u"OrderService");
  EXPECT_EQ(test::call(*object, u"offers", {test::of_string(offered)}).value.value.boolean,
            kVariantTrue);
  EXPECT_EQ(test::call(*object, u"offers", {test::of_string(other)}).value.value.boolean,
            kVariantFalse);
  VariantRecord arguments = test::variant(vt::kArray | vt::kVariant);
  arguments.value.array = create_array(vt::kVariant, 2);
  auto* elements = static_cast<VariantRecord*>(arguments.value.array->data);
  elements[0] = test::of_int32(11);
  elements[1] = test::of_boolean(-1);
  HostString operation(u"SearchForBrands");
  EXPECT_EQ(test::call(*object, u"invoke", {test::of_string(operation), arguments}).text(),
            u"<answer/>");
  clear_variant(&arguments);
  EXPECT_EQ(test::call(*object, u"invoke", {test::of_string(operation)}).result, kOk);
  EXPECT_EQ(lines, (Lines{"SearchForBrands|11|True|by name", "SearchForBrands|by name"}));
}

TEST(ServiceObjectByName, ArgumentsThatAreNoArrayAreError13) {
  Lines lines;
  Held<IDispatchAbi> object(make_service_object_object(std::make_shared<NotingService>(lines)));
  HostString operation(u"SearchForBrands");
  const Outcome outcome =
      test::call(*object, u"invoke", {test::of_string(operation), test::of_int32(5)});
  EXPECT_EQ(outcome.result, kException);
  EXPECT_EQ(outcome.exception.result, 13);
  EXPECT_TRUE(lines.empty());
}

}  // namespace
}  // namespace bvconn::component
