#include "bvconn/automation/interface.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace bvconn::test {
namespace {

using automation::Argument;
using automation::ClassInfo;
using automation::Member;
using automation::MemberKind;
using automation::Value;
using automation::ValueType;

TEST(Interface, EveryClassAndEveryMemberHasANameOfItsOwn) {
  std::set<std::string> class_names;
  for (const ClassInfo* info : automation::classes()) {
    EXPECT_TRUE(class_names.insert(info->name).second) << info->name;
    std::set<std::string> names;
    for (const Member& member : info->members) {
      EXPECT_TRUE(names.insert(member.name).second) << info->name << "." << member.name;
      std::set<std::string> arguments;
      for (const Argument& argument : member.arguments) {
        EXPECT_NE(argument.type, ValueType::kNone) << member.name << ": " << argument.name;
        EXPECT_TRUE(arguments.insert(argument.name).second) << member.name << argument.name;
      }
    }
    EXPECT_NE(info->make(), nullptr) << info->name;
  }
}

TEST(Interface, KindsOfMembersHaveNames) {
  EXPECT_EQ(automation::kind_name(MemberKind::kOperation), "operation");
  EXPECT_EQ(automation::kind_name(MemberKind::kProperty), "property");
  EXPECT_EQ(automation::kind_name(MemberKind::kEvent), "event");
}

TEST(Interface, AValueFitsItsOwnTypeAloneAndAVariantEveryKindOfVariant) {
  XMLDocument document;
  const std::vector<std::pair<ValueType, Value>> values{
      {ValueType::kNone, Value()},
      {ValueType::kString, Variant("text")},
      {ValueType::kBoolean, Variant(true)},
      {ValueType::kInt16, Variant(std::int16_t{1})},
      {ValueType::kInt32, Variant(std::int32_t{1})},
      {ValueType::kSoapNode, Variant(SoapNode())},
      {ValueType::kStringArray, StringArray()},
      {ValueType::kSoapEnvelope, SoapEnvelope()},
      {ValueType::kHTTPTransport, std::shared_ptr<HTTPTransport>()},
      {ValueType::kXMLDocument, &document},
      {ValueType::kObject, std::shared_ptr<ServiceObject>()}};
  for (const auto& [own, value] : values) {
    for (const auto& [type, other] : values) {
      EXPECT_EQ(automation::fits(value, type), own == type)
          << automation::type_name(own) << " as " << automation::type_name(type);
    }
    EXPECT_EQ(automation::fits(value, ValueType::kVariant), std::holds_alternative<Variant>(value))
        << automation::type_name(own);
  }
}

TEST(Interface, AnUnknownClassIsNull) {
  EXPECT_EQ(automation::find_class("BVNoConnector"), nullptr);
  EXPECT_EQ(automation::find_class("bvinvoiceconnector"), nullptr);
}

// These three show the same in all their instances, so hosts and scripts use them by name.
TEST(Interface, TheConnectorObjectAndTheCataloguesArePredeclared) {
  std::set<std::string> predeclared;
  for (const ClassInfo* info : automation::classes()) {
    if (info->predeclared) predeclared.insert(info->name);
  }
  EXPECT_EQ(predeclared, (std::set<std::string>{"BVConnectorObject", "BVMethods", "BVServices"}));
}

}  // namespace
}  // namespace bvconn::test
