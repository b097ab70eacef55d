#include "bvconn/connectors/documents/bv_quote_connector.h"

#include <gtest/gtest.h>

#include "bvconn/dal/bv_connector_object.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "support/error_of.h"
#include "support/recording_platform.h"

namespace bvconn {
namespace {

using Lines = std::vector<std::string>;
using test::envelope_text;
using test::error_of;
using test::RecordingPlatform;

TEST(CanExpirationBeOveridden, ANilAnswerIsNoBoolean) {
  RecordingPlatform world;
  world.reply(envelope_text("canExpirationBeOveriddenResponse", "<return xsi:nil=\"true\"/>"));
  const Error error =
      error_of([] { BVQuoteConnector().canExpirationBeOveridden("http://h/", "S", "Q"); });
  EXPECT_EQ(error.number, error_numbers::kTypeMismatch);
  EXPECT_EQ(error.source, "BVConn");
}

TEST(GetNewPriceExpirationDate, WritesWhatReadsAsADateAndLeavesOtherTextAsItIs) {
  struct Case {
    const char* answer;  ///< attributes and text of the answer
    const char* date;
  };
  for (const Case& each : {Case{" xsi:type=\"xsd:dateTime\">2007-01-05T22:30:00", "1/5/2007"},
                           {" xsi:type=\"xsd:date\">2010-12-31", "12/31/2010"},
                           {">March 1, 2011", "3/1/2011"},
                           {">2011-03-01T10:00:00", "3/1/2011"},
                           {">39087", "1/5/2007"},
                           {"> 39087.75 ", "1/5/2007"},
                           {" xsi:type=\"xsd:int\">39087", "1/5/2007"},
                           {" xsi:type=\"xsd:double\">39087.25", "1/5/2007"},
                           {" xsi:type=\"xsd:double\">0", "12/30/1899"},
                           {" xsi:type=\"xsd:double\">4500000000", "4500000000"},
                           {" xsi:type=\"xsd:boolean\">true", "True"},
                           {"> on request ", " on request "},
                           {">13/13/2007", "13/13/2007"},
                           {">", ""},
                           {" xsi:nil=\"true\">", ""}}) {
    SCOPED_TRACE(each.answer);
    RecordingPlatform world;
    world.reply(envelope_text("getNewPriceExpirationDateResponse",
                              std::string("<return") + each.answer + "</return>"));
    EXPECT_EQ(BVQuoteConnector().getNewPriceExpirationDate("http://h/", "S", "Q"), each.date);
  }
}

TEST(SetQuoteStatusToQuoted, ADisabledMethodGoesBySoapUntilDisabledMethodsAreAllowed) {
  RecordingPlatform world;
  world.use_dal();
  session().DisabledDALServices = "urn:QuoteService.setQuoteStatusToQuoted|";
  const std::string answer = envelope_text("setQuoteStatusToQuotedResponse", "<return>R</return>");
  world.dal_answers["QuoteService.SetQuoteStatusToQuoted"] = answer;
  BVQuoteConnector quotes;
  BVConnectorObject object;

  world.reply(answer);
  quotes.SetQuoteStatusToQuoted("http://h/", "S", "Q-1");
  EXPECT_EQ(world.sent.size(), 1U);
  EXPECT_EQ(world.record.dal, Lines{});

  object.AllowDisabledDALMethods(true);
  quotes.SetQuoteStatusToQuoted("http://h/", "S", "Q-2");
  EXPECT_EQ(world.sent.size(), 1U);
  EXPECT_EQ(world.record.dal, Lines{"QuoteService.SetQuoteStatusToQuoted(\"Q-2\")"});

  object.AllowDisabledDALMethods(false);
  world.reply(answer);
  quotes.SetQuoteStatusToQuoted("http://h/", "S", "Q-3");
  EXPECT_EQ(world.sent.size(), 2U);
  EXPECT_EQ(world.record.dal.size(), 1U);
}

}  // namespace
}  // namespace bvconn
