#include "bvconn/automation/interface.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace bvconn::test {
namespace {

using automation::Argument;
using automation::ClassInfo;
using automation::Member;
using automation::MemberKind;
using automation::ValueType;

std::vector<std::string> names_of(const ClassInfo& info) {
  std::vector<std::string> names;
  for (const Member& member : info.members) names.push_back(member.name);
  return names;
}

/// "name:type" of each argument, with "?" for optional ones.
std::string arguments_of(const Member& member) {
  std::string text;
  for (const Argument& argument : member.arguments) {
    text += text.empty() ? "" : ", ";
    text += argument.name + ":" + std::string(automation::type_name(argument.type));
    if (argument.optional) text += "?";
  }
  return text;
}

const ClassInfo& class_of(std::string_view name) {
  const ClassInfo* info = automation::find_class(name);
  if (info == nullptr) throw std::out_of_range(std::string(name));
  return *info;
}

const Member& member_of(std::string_view class_name, std::string_view name) {
  const Member* member = class_of(class_name).find(name);
  if (member == nullptr) throw std::out_of_range(std::string(name));
  return *member;
}

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

TEST(Interface, AnUnknownClassIsNull) {
  EXPECT_EQ(automation::find_class("BVNoConnector"), nullptr);
  EXPECT_EQ(automation::find_class("bvinvoiceconnector"), nullptr);
}

TEST(Interface, ConnectorObjectHasItsMembersInSlotOrder) {
  EXPECT_EQ(names_of(class_of("BVConnectorObject")),
            (std::vector<std::string>{"HTTPTransportObject",
                                      "UsingTorvexDAL",
                                      "AllowDisabledDALMethods",
                                      "UseDALSave",
                                      "SendDALMessageToLog",
                                      "IsDALDisabled",
                                      "GetDisabledDALServices",
                                      "DALUrl",
                                      "UserName",
                                      "Password",
                                      "AppVer",
                                      "SalesOrg",
                                      "AuthenticationService",
                                      "SummaryService",
                                      "HeartBeatService",
                                      "SearchService",
                                      "ProjectService",
                                      "QuoteService",
                                      "OrderService",
                                      "MaintenanceService",
                                      "InventoryInquiryService",
                                      "RMAService",
                                      "InvoiceService",
                                      "PriceAndAvailabilityService",
                                      "PrintingService",
                                      "SubmittalService",
                                      "SalesInstrumentService",
                                      "InitTorvexDAL",
                                      "UseTorvexDAL"}));
  EXPECT_TRUE(class_of("BVConnectorObject").predeclared);
}

TEST(Interface, ConnectorObjectsCredentialsAreWriteOnly) {
  for (const char* name : {"UserName", "Password", "AppVer", "SalesOrg"}) {
    EXPECT_FALSE(member_of("BVConnectorObject", name).readable) << name;
    EXPECT_TRUE(member_of("BVConnectorObject", name).writable) << name;
  }
  for (const char* name : {"UsingTorvexDAL", "AllowDisabledDALMethods", "UseDALSave", "DALUrl",
                           "GetDisabledDALServices"}) {
    EXPECT_TRUE(member_of("BVConnectorObject", name).readable) << name;
    EXPECT_TRUE(member_of("BVConnectorObject", name).writable) << name;
  }
  EXPECT_FALSE(member_of("BVConnectorObject", "HTTPTransportObject").writable);
  EXPECT_EQ(member_of("BVConnectorObject", "HTTPTransportObject").result,
            ValueType::kHTTPTransport);
  EXPECT_EQ(member_of("BVConnectorObject", "RMAService").result, ValueType::kObject);
}

TEST(Interface, ConnectorObjectsQuestionsArePropertiesWithArguments) {
  const Member& disabled = member_of("BVConnectorObject", "IsDALDisabled");
  EXPECT_EQ(disabled.kind, MemberKind::kProperty);
  EXPECT_EQ(disabled.result, ValueType::kBoolean);
  EXPECT_EQ(arguments_of(disabled), "evalMethod:string, evalService:string");
  const Member& log = member_of("BVConnectorObject", "SendDALMessageToLog");
  EXPECT_EQ(log.kind, MemberKind::kProperty);
  EXPECT_EQ(arguments_of(log), "evalMethod:string, evalMessage:string");
  EXPECT_EQ(arguments_of(member_of("BVConnectorObject", "InitTorvexDAL")), "dal_server_url:string");
}

TEST(Interface, SendHasTwoOptionalArgumentsWithTheirOwnDefaults) {
  EXPECT_EQ(names_of(class_of("BVGenericConnector")),
            (std::vector<std::string>{"Send", "SoapEnvelope"}));
  const Member& send = member_of("BVGenericConnector", "Send");
  EXPECT_EQ(arguments_of(send),
            "aService:string, aMethod:string, aRootNodeName:string, aSoapNode:SoapNode, "
            "aServerURL:string, aTimeout:int32?, aSessionID:string?");
  EXPECT_EQ(std::get<Variant>(send.arguments[5].default_value), Variant(std::int32_t{0}));
  EXPECT_EQ(std::get<Variant>(send.arguments[6].default_value), Variant("NOTHING"));
  EXPECT_EQ(send.result, ValueType::kSoapNode);
  EXPECT_EQ(member_of("BVGenericConnector", "SoapEnvelope").result, ValueType::kSoapEnvelope);
  EXPECT_FALSE(member_of("BVGenericConnector", "SoapEnvelope").writable);
}

TEST(Interface, HeartBeatHasTwoOperationsAndAnEvent) {
  EXPECT_EQ(names_of(class_of("BVHeartBeatConnector")),
            (std::vector<std::string>{"sendHeartBeat", "UpdateHeartBeatTime", "HeartBeatError"}));
  EXPECT_EQ(arguments_of(member_of("BVHeartBeatConnector", "sendHeartBeat")),
            "aServerURL:string, aSessionID:string, isBrimvale:boolean?");
  EXPECT_EQ(member_of("BVHeartBeatConnector", "HeartBeatError").kind, MemberKind::kEvent);
}

TEST(Interface, GetInvoiceTakesServerSessionAndInvoice) {
  EXPECT_EQ(arguments_of(member_of("BVInvoiceConnector", "GetInvoice")),
            "aServerURL:string, aSessionID:string, strInvoiceUID:string");
  EXPECT_EQ(member_of("BVInvoiceConnector", "GetInvoice").result, ValueType::kSoapNode);
  EXPECT_FALSE(class_of("BVInvoiceConnector").predeclared);
}

TEST(Interface, CataloguesHaveTheirRowsAsConstants) {
  EXPECT_EQ(class_of("BVMethods").members.size(), 227U);
  EXPECT_EQ(class_of("BVMethods").members.front().name, "ForceSubmit");
  EXPECT_EQ(class_of("BVMethods").members.back().name, "HasValidConfigurations");
  EXPECT_EQ(member_of("BVMethods", "CheckTypeAheadFile").constant,
            Variant("checkTypeAheadFileIfItDoesNotExistThenKickOffPrimeTypeAhead"));
  EXPECT_EQ(class_of("BVServices").members.size(), 20U);
  EXPECT_EQ(class_of("BVServices").members.front().name, "PostalService");
  EXPECT_EQ(member_of("BVServices", "InventorySearch").constant,
            Variant("urn:InventoryInquiryService"));
  EXPECT_TRUE(class_of("BVMethods").predeclared);
  EXPECT_TRUE(class_of("BVServices").predeclared);
}

}  // namespace
}  // namespace bvconn::test
