#include <cstdint>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/soap/variant.h"
#include "sandbox/operations/documents.h"
#include "sandbox/operations/locks.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kService = "urn:QuoteService";
constexpr std::string_view kQuoted = "QUOTED";

void get_quote(SoapCall& call) {
  call.results.Append(need(call, kQuoteKind, key_at(call, 0)).tree());
}

void set_status_to_quoted(SoapCall& call) {
  Document quote = need_unlocked(call, kQuoteKind, key_at(call, 0));
  keep_status(call, kQuoteKind, quote, kQuoted);
  answer_state(call, kQuoteKind, quote);
}

// Prices that a customer was given stand until they expire.
void can_expiration_be_overridden(SoapCall& call) {
  const Document quote = need(call, kQuoteKind, key_at(call, 0));
  call.results.Create("return", quote.status != kQuoted);
}

void get_new_price_expiration_date(SoapCall& call) {
  constexpr std::int64_t kThirtyDays = 30LL * 86'400'000;
  const SoapNode tree = need(call, kQuoteKind, key_at(call, 0)).tree();
  const auto date = conversions::date_of(child_text(tree, "PriceExpirationDate"));
  const Date now = date.value_or(from_civil({.year = 2027, .month = 12, .day = 1}));
  call.results.Create("return", Date{now.milliseconds + kThirtyDays});
}

void update_rfq(SoapCall& call) {
  Document rfq = need(call, kRfqKind, key_at(call, 0));
  const SoapNode tree = rfq.tree();
  set_child(tree, "MfrQuoteNumber", key_at(call, 1));
  set_child(tree, "Status", "ANSWERED");
  call.store.documents().keep(kRfqKind, rfq, tree);
  answer_text(call, "Updated");
}

void get_rfq_summary(SoapCall& call) {
  const Document quote = need(call, kQuoteKind, key_at(call, 0));
  SoapNodes answer = begin_answer(call);
  for (const Document& rfq : call.store.documents().children(kRfqKind, quote.gid)) {
    answer.Append(rfq.tree());
  }
}

}  // namespace

std::vector<DocumentRow> quote_rows() {
  return {{kService, "getQuote", get_quote},
          {kService, "setQuoteStatusToQuoted", set_status_to_quoted},
          {kService, "canExpirationBeOveridden", can_expiration_be_overridden},
          {kService, "getNewPriceExpirationDate", get_new_price_expiration_date},
          {kService, "updateRFQ", update_rfq},
          {"urn:SummaryService", "getRFQSummary", get_rfq_summary}};
}

}  // namespace bvconn::sandbox
