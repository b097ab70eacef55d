#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "automation/tool_process.h"

namespace bvconn::test {
namespace {

using nlohmann::ordered_json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

ordered_json described(const std::string& path) {
  const Tool::Outcome outcome = Tool::run({"describe", path, "--json"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  return ordered_json::parse(outcome.out);
}

TEST(Describe, ShowsPeopleAnOperationWhole) {
  const Tool::Outcome outcome = Tool::run({"describe", "BVInvoiceConnector.GetInvoice"});
  EXPECT_EQ(outcome.out,
            "BVInvoiceConnector.GetInvoice\n"
            "  gives SoapNode\n"
            "\n"
            "Arguments\n"
            "  aServerURL     string\n"
            "  aSessionID     string\n"
            "  strInvoiceUID  string\n"
            "\n"
            "By SOAP\n"
            "  posts to    aServerURL\n"
            "  method      getInvoice of urn:InvoiceService\n"
            "  SOAPAction  urn:InvoiceService\n"
            "  time-out    300000 ms unless defaultTimeOut is set\n"
            "  header      userID <- aSessionID\n"
            "  body        in this order:\n"
            "    1  param  string  <- strInvoiceUID\n"
            "\n"
            "Failures\n"
            "  An error by SOAP is logged under BVInvoiceConnector.GetInvoice and raised with its "
            "number,\n"
            "  source and description alone.\n"
            "  A fault leaves as 0x80044201 with the server's text; the fault code 10041 leaves as "
            "0x80042739.\n"
            "\n"
            "Log lines of its own\n"
            "  EnterMethod  BVInvoiceConnector  GetInvoice  level 1\n"
            "  ExitMethod   BVInvoiceConnector  GetInvoice  level 1\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, 0);
}

TEST(Describe, ShowsTheDataAccessLayerWithItsCondition) {
  EXPECT_THAT(Tool::run({"describe", "BVProjectConnector.SaveProject"}).out,
              AllOf(HasSubstr("  when UsingTorvexDAL is true and UseDALSave is true and the method "
                              "is not disabled there\n  (urn:ProjectService.save)\n"),
                    HasSubstr("  calls  ProjectService.SaveProject with, in this order:\n"
                              "    1  the request's text  <- aSessionID, aProject\n")));
}

TEST(Describe, SaysWhichTextDecidesTheForm) {
  EXPECT_THAT(Tool::run({"describe", "BVSalesInstrumentConnector.SetLineComments"}).out,
              AllOf(HasSubstr("By SOAP, form 1 of 3 (aSalseInstrType=PROJECT)\n"),
                    HasSubstr("By SOAP, form 3 of 3 (aSalseInstrType=ORDER)\n")));
}

TEST(Describe, SaysThatNothingIsSent) {
  EXPECT_THAT(Tool::run({"describe", "BVProjectConnector.setStatusToLostOpportunity"}).out,
              AllOf(HasSubstr("\nSends nothing.\n"), Not(HasSubstr("By SOAP"))));
}

TEST(Describe, GivesProgramsTheSameAsData) {
  const ordered_json json = described("BVOrderConnector.getSAPOrderView");
  EXPECT_EQ(json["class"], "BVOrderConnector");
  EXPECT_EQ(json["result"], "SoapNode");
  EXPECT_EQ(json["arguments"][3],
            ordered_json::parse(R"({"name":"aIncludePrice","type":"boolean","optional":false})"));
  ASSERT_EQ(json["soap"].size(), 1U);
  EXPECT_EQ(json["soap"][0]["method"], "getSAPOrderView");
  EXPECT_EQ(json["soap"][0]["soapAction"], "urn:OrderService");
  EXPECT_EQ(json["soap"][0]["headers"],
            ordered_json::parse(R"([{"name":"userID","arguments":["aSessionID"]}])"));
  EXPECT_EQ(json["soap"][0]["body"][1],
            ordered_json::parse(R"({"name":"includePrice","types":["boolean"],"nil":false,)"
                                R"("anyContent":false,"arguments":["aIncludePrice"]})"));
  EXPECT_EQ(json["dal"][0]["object"], "OrderService");
  EXPECT_EQ(json["condition"],
            ordered_json::parse(R"({"usingTorvexDAL":true,"useDALSave":false,)"
                                R"("disabledBy":["urn:OrderService.getSAPOrderView"]})"));
  EXPECT_EQ(json["failures"]["soap"]["keeps"],
            ordered_json::parse(R"(["number","source","description"])"));
}

TEST(Describe, AMappedFaultCodeIsData) {
  EXPECT_EQ(described("BVInvoiceConnector.GetInvoice")["failures"]["soap"]["codes"],
            ordered_json::parse(R"([{"number":-2147211463,"hex":"0x80042739","code":10041}])"));
}

TEST(Describe, AClassOrNothingIsListed) {
  EXPECT_EQ(Tool::run({"describe"}).out, Tool::run({"list"}).out);
  EXPECT_EQ(Tool::run({"describe", "BVHeartBeatConnector"}).out,
            Tool::run({"list", "BVHeartBeatConnector"}).out);
}

TEST(Describe, GivesAllOperationsOneOnEachLine) {
  const Tool::Outcome outcome = Tool::run({"describe", "--all", "--json"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  // 205 operations of connectors, and of the session's object two and two properties with
  // arguments.
  const auto lines = outcome.lines();
  ASSERT_EQ(lines.size(), 209U);
  EXPECT_EQ(ordered_json::parse(lines.front())["operation"], "SendDALMessageToLog");
  EXPECT_EQ(ordered_json::parse(lines.back())["class"], "BVConfigConnector");
  EXPECT_EQ(lines[4] + "\n", Tool::run({"describe", "BVGenericConnector.Send", "--json"}).out);
  EXPECT_THAT(Tool::run({"describe", "--all"}).out,
              HasSubstr("\n\nBVInvoiceConnector.GetInvoice\n  gives SoapNode\n"));
}

TEST(Describe, TakesAllInPlaceOfOneAlone) {
  EXPECT_EQ(Tool::run({"describe", "--all", "BVInvoiceConnector.GetInvoice"}).status, 2);
}

TEST(Describe, OperationsKeepToTheWidthOfAPage) {
  const auto classes = ordered_json::parse(Tool::run({"list", "--json"}).out);
  std::size_t described_count = 0;
  for (const auto& each : classes) {
    const std::string cls = each["class"];
    if (cls != "BVSalesInstrumentConnector" && cls != "BVOrderConnector") continue;
    for (const auto& member : each["members"]) {
      if (member["kind"] != "operation") continue;
      const std::string path = cls + "." + member["name"].get<std::string>();
      const Tool::Outcome outcome = Tool::run({"describe", path});
      EXPECT_EQ(outcome.status, 0) << path << outcome.err;
      for (const std::string& line : outcome.lines()) EXPECT_LE(line.size(), 100U) << path;
      ++described_count;
    }
  }
  EXPECT_GT(described_count, 10U);
}

TEST(Describe, WritesNeitherLogNorSettings) {
  Tool tool({"describe", "BVInvoiceConnector.GetInvoice"});
  const Tool::Outcome outcome = tool.finish();
  EXPECT_EQ(outcome.status, 0);
  EXPECT_FALSE(std::filesystem::exists(tool.folder / "bvconn"));
  EXPECT_FALSE(std::filesystem::exists(tool.folder / "user.toml"));
}

TEST(NearestNames, AreSuggestedByEveryCommand) {
  const std::string operation = "; did you mean GetInvoice?\n";
  for (const char* command : {"call", "describe", "skeleton"}) {
    const Tool::Outcome outcome = Tool::run({command, "BVInvoiceConnector.getinvoice"});
    EXPECT_THAT(outcome.err, HasSubstr("BVInvoiceConnector has no such member" + operation))
        << command;
    EXPECT_EQ(outcome.status, 2) << command;
  }
  EXPECT_EQ(Tool::run({"list", "BVInvioceConnector"}).err,
            "bvconn: there is no class BVInvioceConnector; did you mean BVInvoiceConnector?\n");
  EXPECT_THAT(Tool::run({"call", "BVInvoiceConnector.GetInvoice", "aServerUrl=x"}).err,
              HasSubstr("there is no argument aServerUrl; did you mean aServerURL?\n"));
}

TEST(NearestNames, AreSuggestedByABatch) {
  EXPECT_EQ(Tool::batch({R"({"id":1,"get":"BVMethod.Beat"})"}).out,
            R"({"id":1,"usage":"BVMethod.Beat: there is no object or class BVMethod; )"
            R"(did you mean BVMethods?"})"
            "\n");
}

TEST(NearestNames, AreNoneWhereNothingIsNear) {
  EXPECT_EQ(Tool::run({"list", "Nonsense"}).err, "bvconn: there is no class Nonsense\n");
}

}  // namespace
}  // namespace bvconn::test
