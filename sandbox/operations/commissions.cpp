#include <cstdint>
#include <string>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/soap/variant.h"
#include "sandbox/operations/documents.h"
#include "sandbox/store/documents_tree.h"

namespace bvconn::sandbox {
namespace {

constexpr const char* kService = "urn:InvoiceService";
constexpr std::int64_t kPercent = 5;

/// The key of a statement: a pay period, for one agent with his number before it
/// ("095/2024-01-31").
struct CommissionKey {
  std::string agent;
  std::string period;

  std::string text() const { return agent.empty() ? period : agent + "/" + period; }
};

CommissionKey parsed(const std::string& text) {
  const auto slash = text.find('/');
  if (slash == std::string::npos) return {.agent = "", .period = text};
  return {.agent = text.substr(0, slash), .period = text.substr(slash + 1)};
}

std::vector<Invoice> invoices_of(SoapCall& call, const CommissionKey& key) {
  InvoiceCriteria criteria;
  criteria.agent_id = key.agent;
  criteria.pay_period_from = key.period;
  criteria.pay_period_to = key.period;
  return call.store.invoices(criteria);
}

double commission(const Invoice& invoice) {
  return static_cast<double>(goods_cents(invoice) * kPercent / 100) / 100.0;
}

void append_period(SoapCall& call, SoapNodes periods, const CommissionKey& key) {
  const auto invoices = invoices_of(call, key);
  double sum = 0;
  for (const Invoice& each : invoices) sum += commission(each);
  SoapNodes fields = append_group(periods, "CommissionPeriod").Nodes();
  fields.Create("CommKey", key.text());
  fields.Create("PayPeriodDate", conversions::text_to_date(key.period));
  fields.Create("InvoiceCount", static_cast<std::int32_t>(invoices.size()));
  fields.Create("Commission", conversions::round_half_even(sum, 2));
}

// One parameter asks for all agents, two for the one that the second names.
void get_range(SoapCall& call) {
  const std::int16_t count = to_int16(call.parameters.Item(0).Value());
  std::string agent;
  if (call.parameters.Count() > 1) {
    agent = conversions::format_number(to_double(call.parameters.Item(1).Value()), "000");
  }
  SoapNodes answer = begin_answer(call);
  for (const std::string& period : call.store.pay_periods(agent, count)) {
    append_period(call, answer, {.agent = agent, .period = period});
  }
}

void append_statement(SoapCall& call, SoapNodes fields) {
  const CommissionKey key = parsed(key_at(call, 0));
  const auto invoices = key.period.empty() ? std::vector<Invoice>() : invoices_of(call, key);
  if (invoices.empty()) refuse_key("commission statement", "CommKey", key.text());
  fields.Create("CommKey", key.text());
  fields.Create("PayPeriodDate", conversions::text_to_date(key.period));
  SoapNodes lines = append_group(fields, "Lines").Nodes();
  double sum = 0;
  for (const Invoice& each : invoices) {
    sum += commission(each);
    SoapNodes line = append_group(lines, "Line").Nodes();
    line.Create("InvoiceNumber", each.invoice_number);
    line.Create("AgentID", each.agent_id);
    line.Create("CustomerName", each.customer.name);
    line.Create("Commission", commission(each));
  }
  fields.Create("Total", conversions::round_half_even(sum, 2));
}

void get_statement(SoapCall& call) {
  append_statement(call, begin_answer(call));
}

void get_sap_statement(SoapCall& call) {
  SoapNodes fields = begin_answer(call);
  fields.Create("SAPCompanyCode", "1000");
  append_statement(call, fields);
}

}  // namespace

void add_commissions(Operations& operations) {
  add_method(operations, kService, "getCommissionRange", get_range);
  add_method(operations, kService, "getCommissionData", get_statement);
  add_method(operations, kService, "getSAPCommissionData", get_sap_statement);
}

}  // namespace bvconn::sandbox
