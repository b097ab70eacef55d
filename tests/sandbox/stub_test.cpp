#include "sandbox/stubs/stub.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "sandbox/stubs/stub_forms.h"

namespace bvconn::sandbox {
namespace {

const OperationForm& get_invoice() {
  static const OperationForm form{.name = "BVInvoiceConnector.GetInvoice",
                                  .places = {{.argument = "strInvoiceUID"}},
                                  .session_argument = "aSessionID"};
  return form;
}

Exchange asking_for(std::string_view uid, Route route = Route::kSoap) {
  Exchange exchange;
  exchange.route = route;
  exchange.session = "S-1";
  exchange.forms = {&get_invoice()};
  exchange.values.emplace_back(Variant(uid));
  return exchange;
}

std::vector<StubRule> rules_of(const std::string& json) {
  return stubs_from_text(json, {&get_invoice()});
}

/// A stub for GetInvoice with these further fields.
StubRule rule(const std::string& fields) {
  return rules_of(R"({"operation": "BVInvoiceConnector.GetInvoice", )" + fields + "}").front();
}

std::string refusal_of(const std::string& json) {
  try {
    rules_of(json);
  } catch (const BadStub& error) {
    return error.what();
  }
  return "none";
}

TEST(StubPattern, TakesAnyTextForAStarAndOneCharacterForAQuestionMark) {
  struct Case {
    const char *pattern, *text;
    bool fits;
  };
  for (const Case& each :
       {Case{"INV-*", "INV-1001", true}, Case{"INV-*", "INV-", true}, Case{"INV-*", "REC-1", false},
        Case{"*-10?1", "INV-1001", true}, Case{"*-10?1", "INV-10001", false}, Case{"?", "é", true},
        Case{"?", "", false}, Case{"", "", true}, Case{"", "x", false}, Case{"*", "", true},
        Case{"*a*b*", "xxaxxbxx", true}, Case{"*a*b*", "xxbxxaxx", false}, Case{"*ab", "aab", true},
        Case{"a*", "A", false}}) {
    const TextMatch match{.kind = TextMatch::Kind::kPattern, .text = each.pattern};
    EXPECT_EQ(match.fits(each.text), each.fits) << each.pattern << " " << each.text;
  }
}

TEST(StubRule, FitsByArgumentsSessionAndRoute) {
  const auto fits = [](const std::string& fields, Route route = Route::kSoap) {
    return rule(fields + R"(, "answer": "")").fits(asking_for("INV-1001", route));
  };
  EXPECT_TRUE(fits(R"("arguments": {"strInvoiceUID": "INV-1001"})"));
  EXPECT_FALSE(fits(R"("arguments": {"strInvoiceUID": "INV-100"})"));
  EXPECT_TRUE(fits(R"("arguments": {"strInvoiceUID": {"contains": "V-1"}})"));
  EXPECT_FALSE(fits(R"("arguments": {"strInvoiceUID": {"contains": "v-1"}})"));
  EXPECT_TRUE(fits(R"("arguments": {"strInvoiceUID": {"pattern": "*1"}})"));
  EXPECT_TRUE(fits(R"("session": "S-1")"));
  EXPECT_FALSE(fits(R"("session": {"exact": "S-2"})"));
  EXPECT_TRUE(fits(R"("route": "soap")"));
  EXPECT_FALSE(fits(R"("route": "dal")"));
  EXPECT_TRUE(fits(R"("route": "dal")", Route::kDal));
}

TEST(StubRule, FillsItsHolesWithTextsThatXmlCanCarry) {
  const StubRule filled =
      rule(R"("answer": "<a who='{{session}}'>{{ strInvoiceUID }}, {{aSessionID}}</a>")");
  EXPECT_EQ(filled.filled(asking_for("<'&\">")), "<a who='S-1'>&lt;&apos;&amp;&quot;&gt;, S-1</a>");
}

TEST(StubRule, DoesNotGrowBeyondAllBounds) {
  const StubRule wide = rule(R"("answer": "{{strInvoiceUID}}{{strInvoiceUID}}")");
  EXPECT_THROW(wide.filled(asking_for(std::string(9U << 20, 'x'))), std::length_error);
}

TEST(StubRule, IsRefusedWhereItCanNeverAnswer) {
  struct Case {
    const char *json, *refusal;
  };
  const std::string known = R"({"operation": "BVInvoiceConnector.GetInvoice", )";
  for (const Case& each : {
           Case{R"("answer": "<a>\n<b>")",
                "The answer is no well-formed XML: The text is not well-formed XML: line 2, column "
                "4: "},
           Case{R"("answer": "<Envelope/>")", "The answer is an Envelope that cannot be read: "},
           Case{R"("answer": "</answer>")", "The answer is no well-formed XML: "},
           Case{R"("answer": "<{{strInvoiceUID}}/>")", "The answer is no well-formed XML: "},
           Case{R"("answer": "<a>{{strInvoiceUID</a>")", "The answer has a '{{' without its '}}'"},
           Case{R"("answer": "{{strInvoiceUUID}}")",
                "A request of BVInvoiceConnector.GetInvoice carries no argument 'strInvoiceUUID'; "
                "did you mean strInvoiceUID?"},
           Case{R"("answer": "", "arguments": {"colour": "red"})",
                "A request of BVInvoiceConnector.GetInvoice carries no argument 'colour'; there "
                "are strInvoiceUID"},
           Case{R"("answer": "", "argument": {})",
                "A stub has no field 'argument'; did you mean arguments?"},
           Case{R"("answer": "", "route": "rest")", "route is 'rest', expected soap or dal"},
           Case{R"("answer": "", "times": 0)",
                "times is 0, expected a whole number from 1 to 1000000000"},
           Case{R"("answer": 7)", "answer is 7, expected a text"},
           Case{R"("session": "S")", "A stub needs the field answer"},
           Case{R"("answer": "", "session": {"like": "S"})", "session is {\"like\":\"S\"}, "},
       }) {
    const std::string refusal = refusal_of(known + each.json + "}");
    EXPECT_TRUE(refusal.starts_with(each.refusal)) << each.json << ": " << refusal;
  }
  EXPECT_EQ(refusal_of(R"({"operation": "BVInvoiceConnector.GetInvoices", "answer": ""})"),
            "There is no operation 'BVInvoiceConnector.GetInvoices' that asks the server; did you "
            "mean BVInvoiceConnector.GetInvoice?");
  EXPECT_EQ(refusal_of("[1]"), "A stub is 1, expected an object");
  EXPECT_EQ(refusal_of("{"), "What was sent is no JSON, expected a stub");
}

TEST(StubBook, TakesTheLastThatFitsAndHasAnswersLeft) {
  MemoryStubBook book;
  book.add({rule(R"("answer": "<first/>")"), rule(R"("answer": "<second/>", "times": 2)")});
  const auto answer = [&] { return book.take(asking_for("INV-1"))->rule.answer; };
  EXPECT_EQ(answer(), "<second/>");
  EXPECT_EQ(answer(), "<second/>");
  EXPECT_EQ(answer(), "<first/>");
  EXPECT_EQ(book.all()[1]->answered, 2);
  EXPECT_TRUE(book.remove(book.all()[0]->id));
  EXPECT_FALSE(book.remove("1"));
  EXPECT_EQ(book.take(asking_for("INV-1")), nullptr);
}

TEST(StubBook, HoldsAThousandAndAddsAllOrNone) {
  MemoryStubBook book;
  book.add(std::vector<StubRule>(999, rule(R"("answer": "")")));
  EXPECT_THROW(book.add(std::vector<StubRule>(2, rule(R"("answer": "")"))), std::length_error);
  EXPECT_EQ(book.all().size(), 999U);
  book.clear();
  EXPECT_TRUE(book.all().empty());
}

}  // namespace
}  // namespace bvconn::sandbox
