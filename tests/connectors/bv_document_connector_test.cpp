#include "bvconn/connectors/session/bv_document_connector.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "bvconn/core/session_state.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/variant.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using test::envelope_text;
using test::RecordingPlatform;

std::vector<std::string> names_of(const SoapNode& node) {
  std::vector<std::string> names;
  for (const SoapNode& child : node.Nodes()) names.push_back(child.Name());
  return names;
}

TEST(GetDocuments, PutsAllParametersBelowOneNewNode) {
  RecordingPlatform world;
  world.reply(envelope_text("r", "<first>1</first><second>2</second><first>3</first>"));
  const SoapNode documents = BVDocumentConnector().GetDocuments("http://h/", "G-2");
  EXPECT_EQ(documents.Name(), "");
  EXPECT_EQ(names_of(documents), (std::vector<std::string>{"first", "second", "first"}));
  EXPECT_EQ(to_text(documents.Nodes().Item(2).Value()), "3");
}

TEST(GetDocuments, GivesANodeThatTheCallerCanChange) {
  RecordingPlatform world;
  world.reply(envelope_text("r", "<document><title>1</title></document>"));
  const SoapNode documents = BVDocumentConnector().GetDocuments("http://h/", "G-2");
  documents.Nodes().Create("added", "2");
  documents.Nodes().Item(0).Nodes().Item(0).Value("changed");
  EXPECT_EQ(names_of(documents), (std::vector<std::string>{"document", "added"}));
  EXPECT_EQ(to_text(documents.Nodes().ItemByName("document").Nodes().Item(0).Value()), "changed");
}

TEST(GetDocuments, TellsAReplyWithoutParametersFromAFailure) {
  RecordingPlatform world;
  world.reply(envelope_text("r", ""));
  const SoapNode none = BVDocumentConnector().GetDocuments("http://h/", "G-2");
  ASSERT_TRUE(none);
  EXPECT_EQ(none.Nodes().Count(), 0U);
  world.fail_send(Error(error_numbers::kCannotConnect, "HTTPTransport", "nobody there"));
  EXPECT_FALSE(BVDocumentConnector().GetDocuments("http://h/", "G-2"));
  EXPECT_EQ(world.record.log.back(),
            "LogError BVOrderConnector.getDocuments 0x80044301 \"HTTPTransport\" \"nobody there\" "
            "0");
}

TEST(GetDocuments, AnswersAgainAfterAFailure) {
  RecordingPlatform world;
  world.fail_receive(Error(error_numbers::kConnectionLost, "HTTPTransport", "lost"));
  EXPECT_FALSE(BVDocumentConnector().GetDocuments("http://h/", "G-2"));
  world.reply(envelope_text("r", "<a>1</a>"));
  EXPECT_EQ(BVDocumentConnector().GetDocuments("http://h/", "G-2").Nodes().Count(), 1U);
  EXPECT_EQ(session().LastHeartBeat, world.now);
}

}  // namespace
}  // namespace bvconn
