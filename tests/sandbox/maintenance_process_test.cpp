#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "bvconn/connectors/documents/bv_project_connector.h"
#include "bvconn/connectors/maintenance/bv_maintenance_connector.h"
#include "bvconn/connectors/print/bv_print_connector.h"
#include "bvconn/connectors/session/bv_config_connector.h"
#include "bvconn/connectors/session/bv_document_connector.h"
#include "bvconn/connectors/session/bv_export_connector.h"
#include "bvconn/connectors/session/bv_postal_connector.h"
#include "bvconn/connectors/session/bv_summary_connector.h"
#include "bvconn/platform/error.h"
#include "sandbox/documents_fixture.h"
#include "sandbox/store/database.h"

namespace bvconn::test {
namespace {

using Texts = std::vector<std::string>;
using Maintenance = BVMaintenanceConnector;

class SandboxMaintenance : public SandboxDocuments {
 protected:
  Maintenance maintenance_;
  BVPrintConnector print_;
};

Texts texts(const SoapNode& list, std::string_view name) {
  Texts found;
  for (const SoapNode& each : list.Nodes()) found.push_back(text(each, name));
  return found;
}

SoapNode tree(std::string_view root, std::string_view name, std::string_view value) {
  SoapNode node = SoapNode::make(root);
  node.Nodes().Create(name, value);
  return node;
}

TEST_F(SandboxMaintenance, ParagraphsAreMadeChangedDeletedAndPutInOrder) {
  const std::string made =
      text(maintenance_.CreateParagraph("S1", tree("Paragraph", "Text", "New."), url_), "UID");
  EXPECT_EQ(texts(maintenance_.GetAllParagraphs("S1", url_), "UID"),
            (Texts{"PAR-101", "PAR-102", "PAR-103", made}));
  maintenance_.OrderParagraphs("S1", StringArray{made, "PAR-103"}, url_);
  EXPECT_EQ(texts(maintenance_.GetAllParagraphs("S1", url_), "UID"),
            (Texts{made, "PAR-103", "PAR-101", "PAR-102"}));
  const SoapNode changed = tree("Paragraph", "UID", "PAR-103");
  changed.Nodes().Create("Text", "Changed.");
  maintenance_.UpdateParagraph("S1", changed, url_);
  maintenance_.DeleteParagraph("S1", "PAR-101", url_);
  const SoapNode all = maintenance_.GetAllParagraphs("S1", url_);
  EXPECT_EQ(texts(all, "UID"), (Texts{made, "PAR-103", "PAR-102"}));
  EXPECT_EQ(text(all.Nodes().Item(0), "Text"), "New.");
  EXPECT_EQ(text(all.Nodes().Item(1), "Text"), "Changed.");
}

TEST_F(SandboxMaintenance, RemarksAreApartFromParagraphs) {
  const std::string made =
      text(maintenance_.CreateRemark("S1", tree("Remark", "Text", "Mind the step."), url_), "UID");
  maintenance_.OrderRemarks("S1", StringArray{"RMK-202"}, url_);
  maintenance_.DeleteRemark("S1", "RMK-201", url_);
  EXPECT_EQ(texts(maintenance_.GetAllRemarks("S1", url_), "UID"), (Texts{"RMK-202", made}));
  EXPECT_THROW(maintenance_.DeleteParagraph("S1", made, url_), Error);
  EXPECT_THROW(maintenance_.UpdateRemark("S1", tree("Remark", "UID", "RMK-201"), url_), Error);
}

TEST_F(SandboxMaintenance, AnOrderWithAnUnknownKeyChangesNothing) {
  EXPECT_THROW(maintenance_.OrderParagraphs("S1", StringArray{"PAR-103", "PAR-1"}, url_), Error);
  EXPECT_EQ(texts(maintenance_.GetAllParagraphs("S1", url_), "UID"),
            (Texts{"PAR-101", "PAR-102", "PAR-103"}));
}

TEST_F(SandboxMaintenance, EachUserHasALogo) {
  EXPECT_EQ(maintenance_.GetUserLogo("S1", url_), "standard");
  EXPECT_EQ(maintenance_.SetUserLogo("S1", "jubilee", url_), "jubilee");
  EXPECT_EQ(maintenance_.GetUserLogo("S1", url_), "jubilee");
  EXPECT_EQ(maintenance_.GetUserLogo("S2", url_), "standard");
  EXPECT_EQ(maintenance_.GetUserLogoList("S1", url_).Nodes().Count(), 3U);
}

TEST_F(SandboxMaintenance, TheUserOfTheDataAccessLayerIsWhoLoggedIn) {
  maintenance_.SetUserLogo("anna", "monochrome", url_);
  go_by_dal();
  EXPECT_EQ(maintenance_.GetUserLogo("S1", url_), "monochrome");
}

TEST_F(SandboxMaintenance, AProfileKeepsWhatIsNotNamedAgain) {
  const SoapNode first = tree("Profile", "Phone", "555-0100");
  first.Nodes().Create("Copies", std::int32_t{4});
  maintenance_.SetUserProfile("S1", url_, first);
  const SoapNode kept =
      maintenance_.SetUserProfile("S1", url_, tree("Profile", "Phone", "555-0111"));
  EXPECT_EQ(text(kept, "Phone"), "555-0111");
  EXPECT_EQ(kept.Nodes().ItemByName("Copies").Value(), Variant(std::int32_t{4}));
  EXPECT_FALSE(has(maintenance_.SetUserProfile("S2", url_, tree("P", "Phone", "1")), "Copies"));
}

/// The operations of one kind of printout.
struct DefaultsOfKind {
  const char* print_info;
  SoapNode (Maintenance::*save_agent)(std::string_view, std::string_view, std::string_view);
  std::string (Maintenance::*get_agent)(std::string_view, std::string_view);
  std::string (Maintenance::*set_user)(std::string_view, std::string_view, std::string_view);
  std::string (Maintenance::*get_user)(std::string_view, std::string_view);
};

std::vector<DefaultsOfKind> all_defaults() {
  using M = Maintenance;
  return {
      {"PI-102", &M::SaveAgentQuotePrintoutDefault, &M::GetAgentQuotePrintoutDefault,
       &M::SetUserQuotePrintoutDefault, &M::GetUserQuotePrintoutDefault},
      {"PI-201", &M::SaveAgentOrderPrintoutDefault, &M::GetAgentOrderPrintoutDefault,
       &M::SetUserOrderPrintoutDefault, &M::GetUserOrderPrintoutDefault},
      {"PI-301", &M::SaveAgentOrderSubmitPrintoutDefault, &M::GetAgentOrderSubmitPrintoutDefault,
       &M::SetUserOrderSubmitPrintoutDefault, &M::GetUserOrderSubmitPrintoutDefault},
      {"PI-401", &M::SaveAgentSAPPrintoutDefault, &M::GetAgentSAPPrintoutDefault,
       &M::SetUserSAPPrintoutDefault, &M::GetUserSAPPrintoutDefault},
      {"PI-501", &M::SaveAgentProjectPrintoutDefault, &M::GetAgentProjectPrintoutDefault,
       &M::SetUserProjectPrintoutDefault, &M::GetUserProjectPrintoutDefault},
      {"PI-601", &M::SaveAgentRFQPrintoutDefault, &M::GetAgentRFQPrintoutDefault,
       &M::SetUserRFQPrintoutDefault, &M::GetUserRFQPrintoutDefault}};
}

TEST_F(SandboxMaintenance, EachKindHasADefaultOfTheUser) {
  for (const auto& kind : all_defaults()) {
    EXPECT_EQ((maintenance_.*kind.get_user)("S1", url_), "");
    EXPECT_EQ((maintenance_.*kind.set_user)("S1", url_, kind.print_info), kind.print_info);
  }
  for (const auto& kind : all_defaults()) {
    EXPECT_EQ((maintenance_.*kind.get_user)("S1", url_), kind.print_info);
    EXPECT_EQ((maintenance_.*kind.get_user)("S2", url_), "");
    EXPECT_EQ((maintenance_.*kind.get_agent)("S1", url_), "");
    EXPECT_EQ((maintenance_.*kind.set_user)("S1", url_, ""), "");
    EXPECT_EQ((maintenance_.*kind.get_user)("S1", url_), "");
  }
}

TEST_F(SandboxMaintenance, UsersOfOneAgentShareItsDefaults) {
  maintenance_.SetUserProfile("S3", url_, tree("Profile", "AgentID", "104"));
  for (const auto& kind : all_defaults()) {
    const SoapNode saved = (maintenance_.*kind.save_agent)("S1", url_, kind.print_info);
    EXPECT_EQ(text(saved, "PrintInfoUID"), kind.print_info);
  }
  for (const auto& kind : all_defaults()) {
    EXPECT_EQ((maintenance_.*kind.get_agent)("S2", url_), kind.print_info);
    EXPECT_EQ((maintenance_.*kind.get_agent)("S3", url_), "");
    EXPECT_EQ((maintenance_.*kind.get_user)("S1", url_), "");
  }
}

/// How the whole printout of a kind is saved, and the set of defaults that has it.
struct HouseDefault {
  SoapNode (Maintenance::*save)(std::string_view, std::string_view, const SoapNode&);
  SoapNode (BVPrintConnector::*get)(std::string_view, std::string_view, bool);
};

std::vector<HouseDefault> house_defaults() {
  using M = Maintenance;
  using P = BVPrintConnector;
  return {{&M::SaveQuotePrintoutDefault, &P::GetQuotePrintoutDefaults},
          {&M::SaveOrderPrintoutDefault, &P::GetOrderPrintoutDefaults},
          {&M::SaveSAPPrintoutDefault, &P::GetSAPPrintoutDefaults},
          {&M::SaveProjectPrintoutDefault, &P::GetProjectPrintoutDefaults},
          {&M::SaveRFQPrintoutDefault, &P::GetRFQPrintoutDefaults}};
}

TEST_F(SandboxMaintenance, WholePrintoutsAreKeptForEachKindOnBothRoutes) {
  int copies = 10;
  const auto save_all = [&] {
    for (const auto& kind : house_defaults()) {
      (maintenance_.*kind.save)("S1", url_, tree("Paper", "Copies", std::to_string(++copies)));
    }
  };
  const auto expect_all = [&](int first) {
    for (const auto& kind : house_defaults()) {
      const SoapNode paper = (print_.*kind.get)(url_, "S1", false).Nodes().ItemByName("Paper");
      EXPECT_EQ(text(paper, "Copies"), std::to_string(first++));
    }
  };
  save_all();
  expect_all(11);
  go_by_dal();
  expect_all(11);
  save_all();
  expect_all(16);
}

TEST_F(SandboxMaintenance, TheDefaultInForceIsTheUsersThenTheAgentsThenTheHouses) {
  const auto in_force = [&](bool of_user) {
    return text(print_.GetQuotePrintoutDefaults(url_, "S1", of_user), "PrintInfoUID");
  };
  EXPECT_EQ(in_force(true), "PI-101");
  maintenance_.SaveAgentQuotePrintoutDefault("S1", url_, "PI-102");
  EXPECT_EQ(in_force(true), "PI-102");
  maintenance_.SetUserQuotePrintoutDefault("S1", url_, "PI-201");
  EXPECT_EQ(in_force(true), "PI-201");
  EXPECT_EQ(in_force(false), "PI-102");
}

TEST_F(SandboxMaintenance, TheTypeAheadFileIsThereTheSecondTime) {
  EXPECT_FALSE(maintenance_.CheckTypeAheadFile("S1", url_));
  EXPECT_TRUE(maintenance_.CheckTypeAheadFile("S1", url_));
}

TEST_F(SandboxMaintenance, APasswordIsChangedForTheLogin) {
  const auto file = std::filesystem::temp_directory_path() /
                    ("bvsandbox-users-" + std::to_string(std::random_device{}()) + ".db");
  start({"--port", "0", "--db", file.string()});
  { sandbox::Database(file.string()).run("INSERT INTO users VALUES ('anna', 'secret')"); }
  const auto login = [&](const std::string& password) {
    return sandbox()
        .dal("AuthenticationService/Login",
             R"({"arguments":["anna",")" + password + R"(","1.0","US"]})")
        .status;
  };
  EXPECT_EQ(login("secret"), 200);
  maintenance_.UpdatePassword("anna", "open sesame", url_);
  EXPECT_EQ(login("secret"), 401);
  EXPECT_EQ(login("open sesame"), 200);
  EXPECT_THROW(maintenance_.UpdatePassword("bert", "open sesame", url_), Error);
  EXPECT_EQ(sandbox().end_by(SIGTERM), 0);
  for (const char* end : {"", "-wal", "-shm"}) std::filesystem::remove(file.string() + end);
}

/// How printouts of a kind are saved and read, and a document of which one can be printed.
struct PrintoutsOfKind {
  SoapNode (BVPrintConnector::*save)(std::string_view, std::string_view, const SoapNode&);
  SoapNode (BVPrintConnector::*get)(std::string_view, std::string_view, std::string_view);
  const char* document;
};

TEST_F(SandboxMaintenance, SavedPrintoutsAreReadBack) {
  using P = BVPrintConnector;
  for (const auto& kind : {PrintoutsOfKind{&P::SaveQuotePrintout, &P::GetQuotePrintout, "QUO-4002"},
                           PrintoutsOfKind{&P::SaveOrderPrintout, &P::GetOrderPrintout, "ORD-5002"},
                           PrintoutsOfKind{&P::SaveRFQPrintout, &P::GetRFQPrintout, "RFQ-6002"}}) {
    EXPECT_EQ(text((print_.*kind.get)(url_, "S1", kind.document), "UID"), kind.document);
    const SoapNode own = tree("AnyName", "UID", kind.document);
    own.Nodes().Create("Margin", std::int32_t{12});
    (print_.*kind.save)(url_, "S1", own);
    const SoapNode back = (print_.*kind.get)(url_, "S1", kind.document);
    EXPECT_EQ(back.Name(), "AnyName");
    EXPECT_EQ(text(back, "Margin"), "12");
    const SoapNode fresh = (print_.*kind.save)(url_, "S1", tree("AnyName", "Margin", "13"));
    EXPECT_EQ(text((print_.*kind.get)(url_, "S1", text(fresh, "UID")), "Margin"), "13");
    EXPECT_THROW((print_.*kind.get)(url_, "S1", "PRN-1"), Error);
  }
}

TEST_F(SandboxMaintenance, WhatAManufacturerIsAskedAreHisLines) {
  const SoapNode info = print_.getRFQFromProjAuxInfo("PRJ-3001", "MFR-2", url_, "S1");
  EXPECT_EQ(text(info, "GID"), "PRJ-3001");
  const std::string manufacturer = text(info, "ManufacturerName");
  for (const SoapNode& line : info.Nodes().ItemByName("Lines").Nodes()) {
    EXPECT_EQ(text(line, "Manufacturer"), manufacturer);
  }
  EXPECT_EQ(text(print_.getRFQAuxiliaryInfo("QUO-4001", "MFR-2", url_, "S1"), "GID"), "QUO-4001");
  EXPECT_THROW(print_.getRFQAuxiliaryInfo("QUO-4001", "MFR-0", url_, "S1"), Error);
}

TEST_F(SandboxMaintenance, PrintingHasItsLists) {
  EXPECT_EQ(texts(print_.GetPrintInfos(url_, "S1"), "UID").size(), 7U);
  EXPECT_EQ(texts(print_.GetPrintTemplates(url_, "S1"), "UID"), (Texts{"PT-1", "PT-2", "PT-3"}));
  EXPECT_EQ(texts(print_.getProposalComments("101", url_, "S1"), "UID"),
            (Texts{"PCO-301", "PCO-302", "PCO-303"}));
}

TEST_F(SandboxMaintenance, ASummaryHasTheLatestOrTheNamedDocuments) {
  BVSummaryConnector summary;
  const SoapNode latest = summary.GetUserSummary(2, 0, 1, url_, "S1");
  EXPECT_EQ(texts(latest.Nodes().ItemByName("Projects"), "GID"), (Texts{"PRJ-3030", "PRJ-3029"}));
  EXPECT_EQ(texts(latest.Nodes().ItemByName("Quotes"), "GID"), Texts());
  EXPECT_EQ(texts(latest.Nodes().ItemByName("Orders"), "GID"), Texts{"ORD-5020"});
  const auto expect_named = [&] {
    const SoapNode named = summary.GetUserSummaryByGIDs(StringArray{"PRJ-3004", "PRJ-3002"},
                                                        StringArray{"nogid", "QUO-4001"},
                                                        StringArray{"ORD-5003"}, url_, "S1");
    EXPECT_EQ(texts(named.Nodes().ItemByName("Projects"), "GID"), (Texts{"PRJ-3004", "PRJ-3002"}));
    EXPECT_EQ(texts(named.Nodes().ItemByName("Quotes"), "GID"), Texts());
    EXPECT_EQ(texts(named.Nodes().ItemByName("Orders"), "GID"), Texts{"ORD-5003"});
  };
  expect_named();
  go_by_dal();
  expect_named();
}

TEST_F(SandboxMaintenance, AProjectThatWasSavedWithoutACustomerHasASummaryToo) {
  SoapNode project = SoapNode::make("ProjectBean");
  project.Nodes().Create("GID", "PRJ-77200");
  project.Nodes().Create("Name", "Station");
  BVProjectConnector().SaveProject(url_, "S1", project);
  const SoapNode summary = BVSummaryConnector().getProjectSummary("PRJ-77200", url_, "S1");
  EXPECT_EQ(text(summary, "Name"), "Station");
  EXPECT_EQ(text(summary, "CustomerName"), "");
}

TEST_F(SandboxMaintenance, SummariesLeadFromAProjectToItsOrders) {
  BVSummaryConnector summary;
  EXPECT_EQ(texts(summary.getQuotesForProject("PRJ-3003", url_, "S1"), "GID"), Texts{"QUO-4003"});
  EXPECT_EQ(texts(summary.getOrdersForQuote("QUO-4003", url_, "S1"), "GID"), Texts{"ORD-5003"});
  EXPECT_EQ(texts(summary.getProposalsForQuote("QUO-4003", url_, "S1"), "QuoteGID"),
            Texts{"QUO-4003"});
  EXPECT_EQ(text(summary.getOrderSummary("ORD-5003", url_, "S1"), "GID"), "ORD-5003");
}

TEST_F(SandboxMaintenance, CountriesHaveTheirStatesUnlessTheyAreLoadedLazily) {
  BVPostalConnector postal;
  const SoapNode whole = postal.GetCountries(url_, "S1", false);
  EXPECT_EQ(texts(whole, "Code"), (Texts{"CA", "MX", "US"}));
  EXPECT_EQ(whole.Nodes().Item(0).Nodes().ItemByName("States").Nodes().Count(), 5U);
  const SoapNode lazy = postal.GetCountries(url_, "S1", true);
  EXPECT_EQ(texts(lazy, "Code"), (Texts{"CA", "MX", "US"}));
  EXPECT_FALSE(has(lazy.Nodes().Item(0), "States"));
}

TEST_F(SandboxMaintenance, AnExportIsKept) {
  BVSummaryConnector summary;
  const std::string before = text(summary.getOrderSummary("ORD-5004", url_, "S1"), "Revision");
  const SoapNode answer = BVExportConnector().SetExportComplete(url_, "S1", "ORD-5004");
  EXPECT_EQ(text(answer, "GID"), "ORD-5004");
  EXPECT_EQ(answer.Nodes().ItemByName("Exported").Value(), Variant(true));
  EXPECT_NE(text(summary.getOrderSummary("ORD-5004", url_, "S1"), "Revision"), before);
}

TEST_F(SandboxMaintenance, TheDocumentsOfAnObjectAreSeveralResults) {
  const SoapNode files = BVDocumentConnector().GetDocuments(url_, "ORD-5001");
  ASSERT_TRUE(files);
  EXPECT_EQ(texts(files, "Kind"), (Texts{"order", "acknowledgement"}));
  EXPECT_FALSE(BVDocumentConnector().GetDocuments(url_, "Z-1"));
}

TEST_F(SandboxMaintenance, ConfiguredProductsAreThoseOfTheLines) {
  const SoapNode products = BVConfigConnector().GetConfiguredProduct(url_, "QUO-4006");
  ASSERT_GT(products.Nodes().Count(), 0U);
  for (const SoapNode& each : products.Nodes()) {
    EXPECT_EQ(text(each, "SalesInstrumentGID"), "QUO-4006");
  }
  EXPECT_EQ(text(products.Nodes().Item(0), "LineItemGID"), "QUO-4006-1");
  EXPECT_THROW(BVConfigConnector().GetConfiguredProduct(url_, "Z-1"), Error);
}

}  // namespace
}  // namespace bvconn::test
