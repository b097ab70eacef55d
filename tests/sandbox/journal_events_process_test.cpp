#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "sandbox/events_reader.h"
#include "sandbox/sandbox_process.h"

namespace bvconn::test {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using ::testing::Not;

RawReply get_invoice(SandboxProcess& sandbox, const std::string& uid) {
  return sandbox.soap("urn:InvoiceService", "getInvoice",
                      R"(<param xsi:type="xsd:string">)" + uid + "</param>");
}

/// A reader of the events of a process.
class Reader : public EventsReader {
 public:
  explicit Reader(const SandboxProcess& sandbox, const std::string& query = "",
                  const std::string& headers = "")
      : EventsReader(sandbox.port(), query, headers) {}
};

TEST(SandboxEvents, TellWhatIsKeptAndThenWhatComes) {
  SandboxProcess sandbox;
  get_invoice(sandbox, "INV-1001");
  Reader reader(sandbox);
  const std::string first = reader.until("INV-1001");
  EXPECT_THAT(first, HasSubstr("HTTP/1.1 200 OK\r\n"));
  EXPECT_THAT(first, HasSubstr("Content-Type: text/event-stream\r\n"));
  EXPECT_THAT(first, HasSubstr("\nevent: begin\ndata: {\"goesOn\":false}\n\n"));
  EXPECT_THAT(first, HasSubstr("id: 1\nevent: exchange\ndata: {\"id\":1,"));
  get_invoice(sandbox, "INV-1002");
  const std::string both = reader.until("INV-1002");
  EXPECT_THAT(both, HasSubstr("id: 2\nevent: exchange\n"));
  EXPECT_THAT(both, HasSubstr(R"("operations":["BVInvoiceConnector.GetInvoice"])"));
  EXPECT_THAT(both, HasSubstr(R"("outcome":"answered")"));
  EXPECT_THAT(both, HasSubstr(R"("status":200)"));
  EXPECT_THAT(both, HasSubstr(R"("aSessionID":"***")"));
  EXPECT_THAT(both, Not(HasSubstr("Envelope")));
}

TEST(SandboxEvents, GoOnBehindTheLastOneThatWasSeen) {
  SandboxProcess sandbox;
  for (const char* uid : {"INV-1001", "INV-1002", "INV-1003"}) get_invoice(sandbox, uid);
  Reader again(sandbox, "", "Last-Event-ID: 2\r\n");
  const std::string seen = again.until("INV-1003");
  EXPECT_THAT(seen, HasSubstr(R"({"goesOn":true})"));
  EXPECT_THAT(seen, Not(HasSubstr("INV-1002")));
  Reader stranger(sandbox, "", "Last-Event-ID: 77\r\n");
  const std::string all = stranger.until("INV-1003");
  EXPECT_THAT(all, HasSubstr(R"({"goesOn":false})"));
  EXPECT_THAT(all, HasSubstr("INV-1001"));
}

TEST(SandboxEvents, AreThoseThatAreAskedFor) {
  SandboxProcess sandbox;
  get_invoice(sandbox, "INV-1001");
  get_invoice(sandbox, "INV-0");
  Reader faults(sandbox, "?outcome=fault");
  EXPECT_THAT(faults.until("INV-0"), Not(HasSubstr("INV-1001")));
  Reader wrong(sandbox, "?outcome=folt");
  const RawReply reply = wrong.reply();
  EXPECT_EQ(reply.status, 400);
  EXPECT_THAT(reply.body, HasSubstr("There is no outcome 'folt'"));
}

TEST(SandboxEvents, LeaveOutWhatIsTooMuchAtOnce) {
  SandboxProcess sandbox;
  for (int i = 0; i < 130; ++i) get_invoice(sandbox, "INV-1001");
  Reader reader(sandbox);
  const std::string seen = reader.until("id: 130\n");
  EXPECT_THAT(seen, HasSubstr("event: leftOut\ndata: {\"count\":30}\n\nid: 31\n"));
}

TEST(SandboxEvents, HaveSoManyReadersAndNoWorkerForEach) {
  SandboxProcess sandbox;
  std::vector<std::unique_ptr<Reader>> readers;
  for (int i = 0; i < 16; ++i) {
    readers.push_back(std::make_unique<Reader>(sandbox));
    readers.back()->until("begin");
  }
  EXPECT_EQ(Reader(sandbox).reply().status, 503);
  EXPECT_EQ(get_invoice(sandbox, "INV-1001").status, 200);
  for (const auto& each : readers) EXPECT_THAT(each->until("INV-1001"), HasSubstr("INV-1001"));
  // One that goes makes room for another one.
  readers.pop_back();
  const auto deadline = std::chrono::steady_clock::now() + 10s;
  std::string seen;
  while (seen.empty() && std::chrono::steady_clock::now() < deadline) {
    Reader next(sandbox);
    const std::string text = next.until("\n\n");
    if (text.find("200 OK") != std::string::npos) seen = text;
  }
  EXPECT_THAT(seen, HasSubstr("200 OK"));
}

TEST(SandboxEvents, EndAtOnceWithTheSandbox) {
  SandboxProcess sandbox;
  Reader reader(sandbox);
  reader.until("begin");
  const auto begun = std::chrono::steady_clock::now();
  EXPECT_EQ(sandbox.end_by(SIGTERM), 0);
  EXPECT_TRUE(reader.ends(5s));
  // Requests that are under way are waited for up to five seconds.
  EXPECT_LT(std::chrono::steady_clock::now() - begun, 4s);
}

TEST(SandboxEvents, AreNoneWithoutAJournal) {
  const SandboxProcess sandbox({"--port", "0", "--journal-count", "0"});
  EXPECT_EQ(Reader(sandbox).reply().status, 404);
}

}  // namespace
}  // namespace bvconn::test
