#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>

#include "support/misbehaving_server.h"

namespace bvconn::test {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

struct Outcome {
  int status = -1;
  std::string output;  ///< both streams, in order
};

// The built example as a user runs it, without the settings and the log of whoever runs the tests.
Outcome run_first_program(const std::string& arguments) {
  const std::string nowhere =
      std::filesystem::temp_directory_path() / ("bvconn-first-program-" + std::to_string(getpid()));
  const std::string command = "BVCONN_USER_SETTINGS='" + nowhere + "/user.toml' " +
                              "BVCONN_MACHINE_SETTINGS='" + nowhere + "/machine.toml' " +
                              "BVCONN_LOG_FILE='" + nowhere + "/log' BVCONN_LOG_MASK=0 '" +
                              BVCONN_FIRST_PROGRAM "' " + arguments + " 2>&1";
  Outcome outcome;
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return outcome;
  std::array<char, 4096> piece{};
  while (const std::size_t size = fread(piece.data(), 1, piece.size(), pipe)) {
    outcome.output.append(piece.data(), size);
  }
  const int status = pclose(pipe);
  if (WIFEXITED(status)) outcome.status = WEXITSTATUS(status);
  std::filesystem::remove_all(nowhere);
  return outcome;
}

std::string envelope(const std::string& body) {
  return "<e:Envelope xmlns:e=\"http://schemas.xmlsoap.org/soap/envelope/\""
         " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
         " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"><e:Body>" +
         body + "</e:Body></e:Envelope>";
}

TEST(FirstProgram, PrintsTheFieldsOfTheInvoice) {
  MisbehavingServer server;
  server.answer(answers::reply(
      envelope("<m:getInvoiceResponse xmlns:m=\"urn:InvoiceService\"><return>"
               "<InvoiceNumber>4711</InvoiceNumber><Total xsi:type=\"xsd:double\">12.5</Total>"
               "<Paid xsi:type=\"xsd:boolean\">true</Paid><Note xsi:nil=\"true\"/>"
               "<Lines><Line>a</Line><Line>b</Line></Lines>"
               "</return></m:getInvoiceResponse>")));
  const Outcome outcome = run_first_program("'" + server.url("/soap") + "' 'session 1' 'U-9'");
  EXPECT_EQ(outcome.output,
            "InvoiceNumber: 4711\nTotal: 12.5\nPaid: True\nNote: \nLines: 2 parts\n");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(server.last_request().bytes,
              AllOf(StartsWith("POST /soap HTTP/1.1\r\n"), HasSubstr("urn:InvoiceService"),
                    HasSubstr(">session 1<"), HasSubstr(">U-9<")));
}

TEST(FirstProgram, PrintsTheServersFaultWithItsNumberInHex) {
  MisbehavingServer server;
  server.answer(answers::reply(envelope("<e:Fault><faultcode>e:Server</faultcode>"
                                        "<faultstring>no such invoice</faultstring></e:Fault>"),
                               "500 Internal Server Error"));
  const Outcome outcome = run_first_program("'" + server.url() + "' S U");
  EXPECT_THAT(outcome.output,
              AllOf(StartsWith("0x80044201 from "), HasSubstr("no such invoice"), EndsWith("\n")));
  EXPECT_EQ(outcome.status, 1);
}

TEST(FirstProgram, PrintsTheNumberThatAnInvoiceCodeIsMappedTo) {
  MisbehavingServer server;
  server.answer(
      answers::reply(envelope("<e:Fault><faultcode>10041</faultcode>"
                              "<faultstring>unknown</faultstring></e:Fault>")));
  const Outcome outcome = run_first_program("'" + server.url() + "' S U");
  EXPECT_THAT(outcome.output, StartsWith("0x80042739 from BVInvoiceConnector: "));
  EXPECT_EQ(outcome.status, 1);
}

TEST(FirstProgram, SaysHowItIsCalled) {
  const Outcome outcome = run_first_program("one two");
  EXPECT_EQ(outcome.output, "usage: first_program SERVER-URL SESSION INVOICE-UID\n");
  EXPECT_EQ(outcome.status, 2);
}

}  // namespace
}  // namespace bvconn::test
