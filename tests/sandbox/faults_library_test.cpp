// What an application sees of misbehaviour on demand: the error that the library gives.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "bvconn/connectors/documents/bv_order_connector.h"
#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/connectors/session/bv_heart_beat_connector.h"
#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/observation/world.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/platform.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/timeout_scope.h"
#include "sandbox/command_run.h"
#include "sandbox/sandbox_process.h"
#include "support/error_of.h"

namespace bvconn::test {
namespace {

using testing::HasSubstr;

class LibraryAndFaults : public ::testing::Test {
 protected:
  LibraryAndFaults() : scope_(real_connections()) {}

  /// The words behind `bvsandbox faults add`; nothing else is in force then.
  void set(std::vector<std::string> words) {
    ask_sandbox(sandbox_.port(), {"faults", "clear"});
    words.insert(words.begin(), {"faults", "add"});
    const CommandRun run = ask_sandbox(sandbox_.port(), words);
    ASSERT_EQ(run.status, 0) << run.err;
  }

  SoapNode invoice(std::string_view uid = "INV-1003") {
    return BVInvoiceConnector().GetInvoice(url("/soap"), "S1", uid);
  }
  std::string number_of_invoice() {
    return to_text(invoice().Nodes().ItemByName("InvoiceNumber").Value());
  }
  std::string failure() {
    return hex_number(error_of([this] { invoice(); }).number);
  }
  std::string url(std::string_view path) const {
    return "http://127.0.0.1:" + std::to_string(sandbox_.port()) + std::string(path);
  }

 private:
  static platform::Platform real_connections() {
    auto world = automation::detail::World().platform();
    world.transport = make_http_transport;
    world.service_object = make_http_service_object;
    return world;
  }

  SandboxProcess sandbox_;
  platform::ScopedPlatform scope_;
};

TEST_F(LibraryAndFaults, ASoapFaultIsTheErrorThatItsCodeStandsFor) {
  set({"soap-fault", "--code", "10041", "--text", "It was archived"});
  EXPECT_EQ(failure(), hex_number(error_numbers::kInvoiceFault));
  set({"soap-fault", "--text", "It was archived"});
  const Error error = error_of([this] { invoice(); });
  EXPECT_EQ(hex_number(error.number), hex_number(error_numbers::kSoapFault));
  EXPECT_THAT(error.description, HasSubstr("It was archived"));
}

TEST_F(LibraryAndFaults, WhatIsWrongWithHttpIsAnErrorOfTheExchange) {
  const std::pair<std::vector<std::string>, std::int32_t> kinds[] = {
      {{"status", "--status", "503"}, error_numbers::kHttpStatus},
      {{"status", "--status", "404", "--page", "empty"}, error_numbers::kHttpStatus},
      {{"close"}, error_numbers::kConnectionLost},
      {{"close-in-body"}, error_numbers::kConnectionLost},
      {{"reset"}, error_numbers::kConnectionLost},
      {{"wrong-length"}, error_numbers::kConnectionLost},
      {{"bad-chunk"}, error_numbers::kBadReply},
      {{"cut-gzip"}, error_numbers::kConnectionLost},
  };
  for (const auto& [words, number] : kinds) {
    set(words);
    EXPECT_EQ(failure(), hex_number(number)) << words.front();
  }
}

TEST_F(LibraryAndFaults, WhatIsWrongWithXmlIsNotWellFormed) {
  for (const char* kind : {"cut-xml", "malformed-xml", "empty-body", "wrong-charset"}) {
    set({kind});
    EXPECT_EQ(failure(), hex_number(error_numbers::kNotWellFormed)) << kind;
  }
  set({"wrong-charset", "--charset", "utf-8"});
  EXPECT_EQ(failure(), hex_number(error_numbers::kNotWellFormed));
}

TEST_F(LibraryAndFaults, WhatIsSlowRunsIntoTheTimeOut) {
  const TimeoutScope limit(std::chrono::milliseconds(600));
  set({"delay", "--delay-ms", "3000"});
  EXPECT_EQ(failure(), hex_number(error_numbers::kTimeout));
  set({"drip", "--bytes", "1", "--every-ms", "100"});
  EXPECT_EQ(failure(), hex_number(error_numbers::kTimeout));
}

TEST_F(LibraryAndFaults, AnotherFormOfTheRightAnswerIsRead) {
  set({"multi-ref"});
  EXPECT_EQ(number_of_invoice(), "700103");
  EXPECT_EQ(to_text(invoice().Nodes().ItemByName("Customer").Nodes().ItemByName("GID").Value())
                .substr(0, 4),
            "CUS-");
  set({"gzip"});
  EXPECT_EQ(number_of_invoice(), "700103");
  set({"big-body", "--bytes", "2000000"});
  const std::string uid = to_text(invoice().Nodes().ItemByName("InvoiceUID").Value());
  EXPECT_EQ(uid, "INV-1003" + std::string(2'000'000, 'x'));
}

TEST_F(LibraryAndFaults, TheAnswerToAnotherRequestIsTakenForItsOwn) {
  set({"other-answer", "--skip", "1"});
  EXPECT_EQ(number_of_invoice(), "700103");
  EXPECT_EQ(invoice("INV-1005").Nodes().ItemByName("InvoiceNumber").Value(), Variant("700103"));
}

TEST_F(LibraryAndFaults, AnErrorOfTheDataAccessLayerHasItsNumberAndWords) {
  BVConnectorObject object;
  object.UserName("anna");
  object.Password("secret");
  object.InitTorvexDAL(url("/dal"));
  object.UseTorvexDAL();
  set({"dal-error", "--number", "-2147201504", "--source", "Disk", "--text", "It is full",
       "--operation", "BVOrderConnector.getSAPOrderView"});
  const Error error = error_of(
      [this] { BVOrderConnector().getSAPOrderView("S1", url("/soap"), "ORD-5001", true); });
  EXPECT_EQ(hex_number(error.number), "0x80044E20");
  EXPECT_THAT(error.description, HasSubstr("It is full"));
  // Other operations are left alone.
  BVHeartBeatConnector().sendHeartBeat(url("/soap"), "S1");
}

}  // namespace
}  // namespace bvconn::test
