#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "automation/tool_process.h"

namespace bvconn::test {
namespace {

using nlohmann::ordered_json;
using testing::HasSubstr;

TEST(List, AClassAsDataHasItsMembersInSlotOrder) {
  const Tool::Outcome outcome = Tool::run({"list", "BVHeartBeatConnector", "--json"});
  EXPECT_EQ(outcome.out,
            R"([{"class":"BVHeartBeatConnector","members":[)"
            R"({"name":"sendHeartBeat","kind":"operation","result":"none","arguments":[)"
            R"({"name":"aServerURL","type":"string","optional":false},)"
            R"({"name":"aSessionID","type":"string","optional":false},)"
            R"({"name":"isBrimvale","type":"boolean","optional":true,"default":false}]},)"
            R"({"name":"UpdateHeartBeatTime","kind":"operation","result":"none","arguments":[]},)"
            R"({"name":"HeartBeatError","kind":"event"}]}])"
            "\n");
  EXPECT_EQ(outcome.status, 0);
}

TEST(List, OptionalArgumentsCarryTheirDefaults) {
  const auto json = ordered_json::parse(Tool::run({"list", "BVGenericConnector", "--json"}).out);
  EXPECT_EQ(json[0]["members"][0],
            ordered_json::parse(
                R"({"name":"Send","kind":"operation","result":"SoapNode","arguments":[)"
                R"({"name":"aService","type":"string","optional":false},)"
                R"({"name":"aMethod","type":"string","optional":false},)"
                R"({"name":"aRootNodeName","type":"string","optional":false},)"
                R"({"name":"aSoapNode","type":"SoapNode","optional":false},)"
                R"({"name":"aServerURL","type":"string","optional":false},)"
                R"({"name":"aTimeout","type":"int32","optional":true,"default":0},)"
                R"({"name":"aSessionID","type":"string","optional":true,"default":"NOTHING"}]})"));
  EXPECT_EQ(json[0]["members"][1],
            ordered_json::parse(R"({"name":"SoapEnvelope","kind":"property",)"
                                R"("result":"SoapEnvelope","readable":true,"writable":false})"));
}

TEST(List, PropertiesSayWhatCanBeDoneWithThem) {
  const auto members =
      ordered_json::parse(Tool::run({"list", "BVConnectorObject", "--json"}).out)[0]["members"];
  const auto find = [&](std::string_view name) {
    for (const auto& member : members) {
      if (member["name"] == name) return member.dump();
    }
    return std::string();
  };
  EXPECT_EQ(find("HTTPTransportObject"),
            R"({"name":"HTTPTransportObject","kind":"property","result":"HTTPTransport",)"
            R"("readable":true,"writable":false})");
  EXPECT_EQ(find("UsingTorvexDAL"),
            R"({"name":"UsingTorvexDAL","kind":"property","result":"boolean",)"
            R"("readable":true,"writable":true})");
  EXPECT_EQ(find("Password"), R"({"name":"Password","kind":"property","result":"string",)"
                              R"("readable":false,"writable":true})");
  EXPECT_EQ(find("SearchService"), R"({"name":"SearchService","kind":"property","result":"object",)"
                                   R"("readable":true,"writable":false})");
  EXPECT_EQ(find("IsDALDisabled"),
            R"({"name":"IsDALDisabled","kind":"property","result":"boolean",)"
            R"("readable":true,"writable":false,"arguments":[)"
            R"({"name":"evalMethod","type":"string","optional":false},)"
            R"({"name":"evalService","type":"string","optional":false}]})");
}

TEST(List, CatalogueRowsCarryTheirValues) {
  const auto json = ordered_json::parse(Tool::run({"list", "BVMethods", "--json"}).out);
  EXPECT_EQ(json[0]["members"].size(), 227U);
  const auto row = json[0]["members"][0];
  EXPECT_EQ(row["name"], "ForceSubmit");
  EXPECT_EQ(row["kind"], "property");
  EXPECT_EQ(row["result"], "string");
  EXPECT_EQ(row["writable"], false);
  EXPECT_EQ(row["value"], "forceSubmit");
}

TEST(List, AllClassesAreOneArray) {
  const Tool::Outcome outcome = Tool::run({"list", "--json"});
  const auto json = ordered_json::parse(outcome.out);
  ASSERT_TRUE(json.is_array());
  std::vector<std::string> names;
  for (const auto& each : json) names.push_back(each["class"]);
  EXPECT_THAT(names,
              testing::IsSupersetOf({"BVConnectorObject", "BVGenericConnector", "BVServices",
                                     "BVMethods", "BVInvoiceConnector", "BVHeartBeatConnector"}));
  EXPECT_EQ(names.front(), "BVConnectorObject");
}

TEST(List, ForPeopleShowsClassesAndSignatures) {
  EXPECT_THAT(Tool::run({"list"}).out, HasSubstr("BVHeartBeatConnector"));
  EXPECT_EQ(
      Tool::run({"list", "BVHeartBeatConnector"}).out,
      "BVHeartBeatConnector\n"
      "  none sendHeartBeat(string aServerURL, string aSessionID, boolean isBrimvale = false)\n"
      "  none UpdateHeartBeatTime()\n"
      "  event HeartBeatError\n");
  EXPECT_THAT(Tool::run({"list", "BVServices"}).out,
              HasSubstr("  string Heartbeat = \"urn:HeartBeatService\"\n"));
}

TEST(List, AnUnknownClassIsNotUnderstood) {
  const Tool::Outcome outcome = Tool::run({"list", "BVNoConnector"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.err, "bvconn: there is no class BVNoConnector\n");
}

}  // namespace
}  // namespace bvconn::test
