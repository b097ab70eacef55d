#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "automation/scripted_server.h"
#include "automation/shell.h"
#include "support/misbehaving_server.h"

namespace bvconn::test {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

std::string get_invoice(const std::string& url) {
  return "bvconn call BVInvoiceConnector.GetInvoice strInvoiceUID=U1 --session S --server " + url;
}

TEST(AtATerminal, NamesHaveAColour) {
  ScriptedServer server;
  server.reply(reply_envelope("<return>4711</return>"));
  TerminalSession terminal(get_invoice(server.url()));
  EXPECT_THAT(terminal.read_to_end(), HasSubstr("\x1b[34mreturn\x1b[0m = 4711"));
}

TEST(AtATerminal, ErrorsHaveAColour) {
  TerminalSession terminal(get_invoice(dead_url()));
  EXPECT_THAT(terminal.read_to_end(), HasSubstr("\x1b[31merror 0x80044301\x1b[0m"));
}

TEST(AtATerminal, NothingHasAColourWhereNoneIsWanted) {
  TerminalSession terminal("export NO_COLOR=1\n" + get_invoice(dead_url()));
  EXPECT_THAT(terminal.read_to_end(), HasSubstr("error 0x80044301"));
  EXPECT_THAT(terminal.seen(), Not(HasSubstr("\x1b")));
}

TEST(AtATerminal, WhatGoesElsewhereHasNoColour) {
  ScriptedServer server;
  server.reply(reply_envelope("<return>4711</return>"));
  TerminalSession terminal(get_invoice(server.url()) + " | cat");
  EXPECT_THAT(terminal.read_to_end(), HasSubstr("return = 4711"));
  EXPECT_THAT(terminal.seen(), Not(HasSubstr("\x1b")));
}

TEST(AtATerminal, DataForProgramsHasNoColour) {
  ScriptedServer server;
  server.reply(reply_envelope("<return>4711</return>"));
  TerminalSession terminal(get_invoice(server.url()) + " --output json");
  EXPECT_THAT(terminal.read_to_end(), HasSubstr("\"return\""));
  EXPECT_THAT(terminal.seen(), Not(HasSubstr("\x1b")));
}

Answer late() {
  return Answer{{.kind = Step::Kind::kWait, .pause = std::chrono::milliseconds(1200)}} +
         answers::reply(reply_envelope("<return>4711</return>"));
}

TEST(AtATerminal, ACallOverASecondTellsItsTime) {
  MisbehavingServer server;
  server.otherwise(late());
  TerminalSession terminal(get_invoice(server.url()));
  EXPECT_THAT(terminal.read_to_end(),
              ContainsRegex("bvconn: BVInvoiceConnector.GetInvoice took [1-9][0-9]*[.][0-9] s"));
}

TEST(AtATerminal, AQuickCallDoesNot) {
  ScriptedServer server;
  server.reply(reply_envelope("<return>4711</return>"));
  TerminalSession terminal(get_invoice(server.url()));
  EXPECT_THAT(terminal.read_to_end(), Not(HasSubstr("took")));
}

TEST(AwayFromATerminal, NothingIsSaidOfTheTime) {
  MisbehavingServer server;
  server.otherwise(late());
  EXPECT_EQ(Shell().run(get_invoice(server.url())).err, "");
}

}  // namespace
}  // namespace bvconn::test
