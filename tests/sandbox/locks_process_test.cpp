#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "bvconn/connectors/documents/bv_project_connector.h"
#include "bvconn/connectors/documents/bv_quote_connector.h"
#include "bvconn/connectors/documents/bv_sales_instrument_connector.h"
#include "bvconn/connectors/search/bv_search_connector.h"
#include "bvconn/connectors/session/bv_export_connector.h"
#include "sandbox/documents_calls.h"
#include "sandbox/documents_fixture.h"
#include "support/error_of.h"

namespace bvconn::test {
namespace {

using Text = const std::string&;

struct Change {
  const char* operation;
  std::function<void(Text url, Text user)> make;
};

void set_line_comments(Text url, Text user) {
  BVSalesInstrumentConnector().SetLineComments("order", line_comments("ORD-5013-1", "c"), url,
                                               user);
}

/// Each changes PRJ-3013, QUO-4013 or ORD-5013.
std::vector<Change> changes() {
  using Project = BVProjectConnector;
  using Instrument = BVSalesInstrumentConnector;
  return {
      {"SaveProject",
       [](Text url, Text user) { Project().SaveProject(url, user, some_project("PRJ-3013")); }},
      {"RequestReview",
       [](Text url, Text user) { Project().RequestReview(url, user, some_project("PRJ-3013")); }},
      {"ReturnToAgent",
       [](Text url, Text user) { Project().ReturnToAgent(url, user, some_project("PRJ-3013")); }},
      {"getRevertedProject",
       [](Text url, Text user) { Project().getRevertedProject(url, user, "PRJ-3013"); }},
      {"generateQuotes",
       [](Text url, Text user) {
         Project().generateQuotes(url, user, SoapNode::make("All"), "", some_project("PRJ-3013"));
       }},
      {"ConvertToTemplate",
       [](Text url, Text user) { BVSearchConnector().ConvertToTemplate(user, url, "PRJ-3013"); }},
      {"SetQuoteStatusToQuoted",
       [](Text url, Text user) {
         BVQuoteConnector().SetQuoteStatusToQuoted(url, user, "QUO-4013");
       }},
      {"UpdateQuoteHeaderComments",
       [](Text url, Text user) {
         Instrument().UpdateQuoteHeaderComments(header_comments("QUO-4013", "T", "c"), user, url);
       }},
      {"UpdateHeaderComments",
       [](Text url, Text user) {
         Instrument().UpdateHeaderComments(user, header_comments("ORD-5013", "T", "c"), url);
       }},
      {"SetLineComments", set_line_comments},
      {"UpdateCommSalesPeople",
       [](Text url, Text user) {
         Instrument().UpdateCommSalesPeople(user, url, "ORD-5013", SoapNode::make("P"));
       }},
      {"SetExportComplete",
       [](Text url, Text user) { BVExportConnector().SetExportComplete(url, user, "ORD-5013"); }},
      {"Deactivate",
       [](Text url, Text user) { BVSearchConnector().Deactivate(user, url, "ORD-5013"); }},
  };
}

class SandboxLocks : public SandboxDocuments {
 protected:
  void take(std::string_view gid, std::string_view user) {
    XMLDocument answer;
    pilfer(url_, gid, user, answer);
  }
  SoapNode project() { return connector_.getExistingProject(url_, "S", "PRJ-3013"); }
  std::string revision() {
    return text(connector_.CheckSingleSaveStatus(url_, "S", "PRJ-3013"), "Revision");
  }

  BVProjectConnector connector_;
};

TEST_F(SandboxLocks, WhatAnotherHasLockedIsNotChanged) {
  for (const char* gid : {"PRJ-3013", "QUO-4013", "ORD-5013"}) take(gid, "ANNA");
  for (const Change& change : changes()) {
    const Error error = error_of([&] { change.make(url_, "BERT"); });
    // This one operation does not hand on the words of a fault.
    const bool wordless = std::string_view(change.operation) == "SetLineComments";
    const char* words = wordless ? "The reply is a SOAP fault" : "013' is locked by 'ANNA'";
    EXPECT_NE(error.description.find(words), std::string::npos)
        << change.operation << ": " << error.description;
  }
  EXPECT_EQ(revision(), "1");
  EXPECT_EQ(text(project(), "LockedBy"), "ANNA");
}

TEST_F(SandboxLocks, TheHolderChangesWhatIsLocked) {
  for (const char* gid : {"PRJ-3013", "QUO-4013", "ORD-5013"}) take(gid, "ANNA");
  for (const Change& change : changes()) {
    EXPECT_NO_THROW(change.make(url_, "ANNA")) << change.operation;
  }
  // None of the documents that were saved says anything of a lock.
  EXPECT_EQ(text(project(), "LockedBy"), "ANNA");
}

TEST_F(SandboxLocks, ALockedDocumentIsReadAndCopiedByEverybody) {
  take("PRJ-3013", "ANNA");
  EXPECT_EQ(text(project(), "LockedBy"), "ANNA");
  EXPECT_EQ(text(connector_.CopyProject(url_, "BERT", "PRJ-3013"), "LockedBy"), "");
  EXPECT_NO_THROW(connector_.generateQuotes(url_, "BERT", SoapNode::make("All"), "PRJ-3013"));
}

TEST_F(SandboxLocks, TheHolderLetsGoBySavingAnEmptyLock) {
  take("PRJ-3013", "ANNA");
  const SoapNode saved = project();
  saved.Nodes().ItemByName("LockedBy").Value("");
  connector_.SaveProject(url_, "ANNA", saved);
  EXPECT_EQ(text(project(), "LockedBy"), "");
  EXPECT_NO_THROW(connector_.SaveProject(url_, "BERT", some_project("PRJ-3013")));
}

TEST_F(SandboxLocks, ASaverTakesALockForHimselfAlone) {
  const SoapNode saved = project();
  saved.Nodes().ItemByName("LockedBy").Value("BERT");
  connector_.SaveProject(url_, "ANNA", saved);
  EXPECT_EQ(text(project(), "LockedBy"), "");
  saved.Nodes().ItemByName("LockedBy").Value("ANNA");
  connector_.SaveProject(url_, "ANNA", saved);
  EXPECT_EQ(text(project(), "LockedBy"), "ANNA");
}

TEST_F(SandboxLocks, PilferingIsNoChangeThatCouldBeReverted) {
  const std::string name = text(project(), "Name");
  connector_.SaveProject(url_, "ANNA", some_project("PRJ-3013"));
  take("PRJ-3013", "ANNA");
  EXPECT_EQ(revision(), "2");
  const SoapNode reverted = connector_.getRevertedProject(url_, "ANNA", "PRJ-3013");
  EXPECT_EQ(text(reverted, "Name"), name);
  EXPECT_EQ(text(reverted, "LockedBy"), "ANNA");
}

TEST_F(SandboxLocks, OnTheDataAccessLayerTheUserIsWhoLoggedIn) {
  take("PRJ-3013", "anna");
  take("PRJ-3014", "BERT");
  go_by_dal();
  BVSearchConnector search;
  EXPECT_NO_THROW(search.ConvertToTemplate("BERT", url_, "PRJ-3013"));
  EXPECT_THROW(search.ConvertToTemplate("BERT", url_, "PRJ-3014"), Error);
  const auto reply = sandbox().dal("ProjectService/ConvertToTemplate",
                                   R"({"arguments":["PRJ-3014"]})", sandbox().login());
  EXPECT_NE(reply.body.find("<faultstring>The project 'PRJ-3014' is locked by 'BERT'<"),
            std::string::npos)
      << reply.body;
}

TEST_F(SandboxLocks, ARefusalNamesDocumentAndHolderInItsDetail) {
  take("PRJ-3013", "ANNA");
  const auto reply =
      sandbox().soap("urn:ProjectService", "revert", "<GID xsi:type=\"xsd:string\">PRJ-3013</GID>");
  EXPECT_EQ(reply.status, 500);
  EXPECT_NE(reply.body.find("<faultcode>SOAP-ENV:Client</faultcode><faultstring>The project "
                            "'PRJ-3013' is locked by 'ANNA'</faultstring>"
                            "<detail><GID>PRJ-3013</GID><LockedBy>ANNA</LockedBy></detail>"),
            std::string::npos)
      << reply.body;
}

}  // namespace
}  // namespace bvconn::test
