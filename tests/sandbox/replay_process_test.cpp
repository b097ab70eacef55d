#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "bvconn/bvconn.h"
#include "files/temp_folder.h"
#include "sandbox/command_run.h"
#include "sandbox/replay/asked_request.h"
#include "sandbox/sandbox_process.h"
#include "sandbox/wire/wire_file.h"

namespace bvconn::test {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

/// A step that has a reply, and where it stands.
struct WireCall {
  std::string place;
  wire::WireStep step;
};

std::vector<WireCall> all_wire_calls() {
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(BVCONN_WIRE_FOLDER)) {
    if (entry.path().extension() == ".wire") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  std::vector<WireCall> calls;
  for (const fs::path& file : files) {
    std::ifstream stream(file, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    for (const auto& each : wire::read_wire_file(text).cases) {
      for (const wire::WireStep& step : each.steps) {
        const bool sends = step.url || !step.dal.empty();
        if (!sends || step.broken) continue;
        calls.push_back({file.filename().string() + ":" + std::to_string(step.line), step});
      }
    }
  }
  return calls;
}

std::string bytes_of(const sandbox::Request& request) {
  std::string headers;
  for (const auto& each : request.headers) headers += each.name + ": " + each.value + "\r\n";
  return http_request(request.method, request.target, headers, request.body);
}

TEST(ReplayedWireFiles, GiveEachCaseItsReply) {
  SandboxProcess replay({"replay", BVCONN_WIRE_FOLDER});
  const std::vector<WireCall> calls = all_wire_calls();
  ASSERT_GT(calls.size(), 800U);
  for (const auto& [place, step] : calls) {
    const RawReply reply = exchange(replay.port(), bytes_of(sandbox::http_request_of(step)));
    EXPECT_EQ(reply.status, step.fault && step.dal.empty() ? 500 : 200) << place << reply.body;
    if (step.raw) {
      EXPECT_EQ(reply.body, *step.raw) << place;
    } else if (step.fault) {
      EXPECT_THAT(reply.body, HasSubstr(step.fault->substr(step.fault->find(' ') + 1))) << place;
    } else {
      EXPECT_THAT(reply.body, HasSubstr(">" + step.reply.value_or("") + "</")) << place;
    }
  }
}

TEST(ReplayProcess, AnswersTheLibraryItself) {
  SandboxProcess replay({"replay", BVCONN_WIRE_FOLDER "/invoice"});
  const std::string url = "http://127.0.0.1:" + std::to_string(replay.port()) + "/soap";
  BVInvoiceConnector invoices;
  const SoapNode invoice = invoices.GetInvoice(url, "any session", "U-2");
  EXPECT_EQ(to_text(invoice.Nodes().Item(0).Value()), "4711");
  try {
    invoices.GetInvoice(url, "any session", "U-3");
    ADD_FAILURE() << "an invoice that was not recorded is answered";
  } catch (const Error& error) {
    EXPECT_THAT(error.description, HasSubstr("strInvoiceUID is 'U-2' there, 'U-3' here"));
  }
}

TEST(ReplayProcess, TellsWhatIsWrongWithAnythingElse) {
  SandboxProcess replay({"replay", "--in-order", "--verbose", BVCONN_WIRE_FOLDER "/invoice"});
  EXPECT_EQ(exchange(replay.port(), http_request("GET", "/soap", "", "")).status, 405);
  EXPECT_EQ(exchange(replay.port(), http_request("GET", "/admin/disabled", "", "")).status, 404);
  const RawReply unread = replay.soap_text("<cut", "urn:InvoiceService");
  EXPECT_EQ(unread.status, 500);
  EXPECT_THAT(unread.body, HasSubstr("is not the next recorded exchange, "
                                     "BVInvoiceConnector.AssocInvoiceAndOrderReconcile.soap.wire"));
  EXPECT_EQ(replay.end_by(SIGTERM), 0);
  EXPECT_THAT(replay.errors(), HasSubstr("POST /soap \"urn:InvoiceService\" 500\n"));
}

TEST(ReplayProcess, RefusesAtTheStartWhatItCannotReplay) {
  const files_test::TempFolder folder;
  const CommandRun empty = run_sandbox({"replay", folder.file("")});
  EXPECT_EQ(empty.status, 1);
  EXPECT_EQ(empty.out, "");
  EXPECT_EQ(empty.err, "bvsandbox: '" + folder.file("") + "' holds no recorded exchange\n");
  const CommandRun none = run_sandbox({"replay", folder.file("none")});
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(none.err, "bvsandbox: '" + folder.file("none") + "' is no folder\n");
  EXPECT_EQ(run_sandbox({"replay"}).status, 2);
  EXPECT_EQ(run_sandbox({"replay", "a", "--twice"}).status, 2);
}

}  // namespace
}  // namespace bvconn::test
