#include "words/raised_numbers.h"

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bvconn/core/session_state.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/observation/marks.h"
#include "bvconn/observation/world.h"
#include "bvconn/platform/error.h"
#include "support/idle_transport.h"

namespace bvconn::test {
namespace {

using automation::Argument;
using automation::ClassInfo;
using automation::Member;
using automation::Value;
using automation::ValueType;
using automation::detail::MarkedCall;
using automation::detail::MarkForm;

/// The codes that the server is known to send, and one that it does not.
constexpr std::array kKnownCodes{10011, 10012, 10041, 10061, 10071, 10081};
constexpr std::int32_t kUnknownCode = 19999;

constexpr const char* kFaultText = "because";

/// One more than the most that a 16-bit counter takes.
constexpr int kTooMany = 32769;

std::string envelope(const std::string& body) {
  return "<Envelope xmlns='http://schemas.xmlsoap.org/soap/envelope/'"
         " xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'><Body>" +
         body + "</Body></Envelope>";
}

std::string reply(const std::string& parameters) {
  return envelope("<answer xmlns='urn:test'>" + parameters + "</answer>");
}

std::string fault(const std::string& code) {
  return envelope("<Fault><faultcode xmlns=''>" + code + "</faultcode><faultstring xmlns=''>" +
                  kFaultText + "</faultstring></Fault>");
}

/// Replies whose shape some operation may not expect.
const std::vector<std::string>& odd_replies() {
  static const std::vector<std::string> replies{
      reply("<return>OK</return>"),
      reply("<return>http://document.example</return>"),
      reply("<return>true</return>"),
      reply("<return><part>1</part></return>"),
      reply("<return xsi:nil='true'/>"),
      reply(""),
      fault("Server"),
      "",
  };
  return replies;
}

/// A server and a data access layer that give one answer to everything.
class SameAnswer final : public IdleTransport, public ServiceObject {
 public:
  SameAnswer(std::string_view name, const std::string& answer) : name_(name), answer_(answer) {}

  std::string Receive(std::string_view) override { return answer_; }

  std::string_view name() const override { return name_; }
  std::string invoke(std::string_view operation, std::span<const Variant>, bool) override {
    return operation == "GetDisabledServices" ? "" : answer_;
  }
  bool offers(std::string_view interface_name) const override { return interface_name == name_; }

 private:
  std::string name_;
  const std::string& answer_;
};

/// A node with more children than a 16-bit counter takes.
SoapNode crowd() {
  static const SoapNode node = [] {
    SoapNode made = SoapNode::make("crowd");
    for (int i = 0; i < kTooMany; ++i) made.Nodes().Create("child", "");
    return made;
  }();
  return node;
}

/// Values for one argument that some operation may not take, without the large ones.
std::vector<Value> hostile_values(const Argument& argument) {
  switch (argument.type) {
    case ValueType::kString:
      return {Variant(""), Variant("40000"), Variant("99999999999")};
    case ValueType::kVariant:
      return {Variant(), Variant(40'000), Variant("word"), Variant(StringArray()),
              Variant(StringArray(std::vector<std::string>()))};
    case ValueType::kStringArray:
      return {StringArray(), StringArray(std::vector<std::string>())};
    case ValueType::kSoapNode:
      return {Variant(SoapNode())};
    case ValueType::kXMLDocument:
      return {static_cast<XMLDocument*>(nullptr)};
    default:
      return {};
  }
}

/// A value that is too large for a 16-bit counter, if the argument can have one.
std::optional<Value> large_value(const Argument& argument) {
  if (argument.type == ValueType::kSoapNode) return Variant(crowd());
  if (argument.type == ValueType::kStringArray) {
    return StringArray(std::vector<std::string>(kTooMany));
  }
  return std::nullopt;
}

class Trial {
 public:
  Trial(const ClassInfo& info, const Member& operation)
      : info_(info), operation_(operation), scope_(platform()) {}
  Trial(const Trial&) = delete;
  Trial& operator=(const Trial&) = delete;

  RaisedNumbers run() {
    for (const bool dal : {false, true}) {
      for (const MarkForm form : {MarkForm::kText, MarkForm::kNumber, MarkForm::kArray}) {
        const MarkedCall usual = automation::detail::marked_call(operation_, form, std::nullopt);
        try_answers(usual.values, dal);
        try_arguments(usual.values, form, dal);
      }
    }
    return std::move(raised_);
  }

 private:
  platform::Platform platform() {
    platform::Platform all = automation::detail::World().platform();
    all.transport = [this] { return std::make_shared<SameAnswer>("HTTPTransport", answer_); };
    all.service_object = [this](std::string_view name) {
      return std::make_shared<SameAnswer>(name, answer_);
    };
    return all;
  }

  void try_answers(const std::vector<Value>& values, bool dal) {
    for (const std::string& each : odd_replies()) call(values, each, dal);
    std::string text;
    const auto plain = call(values, fault(std::to_string(kUnknownCode)), dal, &text);
    // What fails with a good reply too is no matter of the fault.
    if (plain == call(values, odd_replies().front(), dal)) return;
    raised_.fault = plain;
    (dal ? raised_.has_text_by_dal : raised_.has_text_by_soap) = text == kFaultText;
    for (const std::int32_t code : kKnownCodes) {
      const auto number = call(values, fault(std::to_string(code)), dal);
      if (number && number != plain) raised_.mapped[code] = *number;
    }
  }

  void try_arguments(const std::vector<Value>& usual, MarkForm form, bool dal) {
    const std::string& well = odd_replies().front();
    for (const MarkedCall& each : automation::detail::variations(operation_, form, std::nullopt)) {
      call(each.values, well, dal);
    }
    for (std::size_t i = 0; i < usual.size(); ++i) {
      std::vector<Value> hostile = hostile_values(operation_.arguments[i]);
      // These take their time, and the form of the other arguments says nothing about them.
      if (auto large = large_value(operation_.arguments[i]); large && form == MarkForm::kText) {
        hostile.push_back(std::move(*large));
      }
      for (Value& each : hostile) {
        std::vector<Value> values = usual;
        values[i] = std::move(each);
        call(values, well, dal);
      }
    }
  }

  /// The number that leaves one call in a session of its own. Without the data access layer nothing
  /// of it is set up.
  std::optional<std::int32_t> call(const std::vector<Value>& values, const std::string& answer,
                                   bool dal, std::string* description = nullptr) {
    answer_ = answer;
    session() = SessionState();
    BVConnectorObject handle;
    if (dal) handle.InitTorvexDAL("http://layer.example");
    handle.UsingTorvexDAL(dal);
    handle.UseDALSave(dal);
    try {
      const auto object = info_.make();
      operation_.invoke(object.get(), values);
    } catch (const Error& error) {
      raised_.all.insert(error.number);
      if (description != nullptr) *description = error.description;
      return error.number;
    }
    return std::nullopt;
  }

  const ClassInfo& info_;
  const Member& operation_;
  std::string answer_;
  RaisedNumbers raised_;
  platform::ScopedPlatform scope_;
};

}  // namespace

RaisedNumbers raised_numbers(const ClassInfo& info, const Member& operation) {
  return Trial(info, operation).run();
}

}  // namespace bvconn::test
