// The services on gSOAP: what is called for each method, with parameters in the types that
// services.gsoap gives them. Each notes what it got, and returns values for the stack to write.

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include <soapH.h>
#include "notes.h"

namespace {

using notes::Json;
using notes::note;
using notes::shown;
using notes::text;
using notes::Text;

/// A fault of the stack's making, with this code in the place of its own.
int fault(soap* context, const char* code, const std::string& words) {
  soap_receiver_fault(context, text(context, words), nullptr);
  *soap_faultcode(context) = code;
  return SOAP_FAULT;
}

Strings strings(soap* context, const std::vector<std::string>& texts) {
  Strings made{};
  made.__size = static_cast<int>(texts.size());
  made.__ptr = static_cast<Text*>(soap_malloc(context, (texts.size() + 1) * sizeof(Text)));
  for (std::size_t i = 0; i < texts.size(); ++i) made.__ptr[i] = text(context, texts[i]);
  return made;
}

constexpr time_t kNewYear2007 = 1167609600;
constexpr time_t kDay = 86400;

}  // namespace

// Faults, by the code alone, by a code in a namespace, with details, and by words alone.

int inv__getInvoice(soap* context, Text uid, Text& result) {
  note(context, __func__, Json::array({shown(uid)}));
  const std::string wanted = uid == nullptr ? "" : uid;
  if (wanted == "none") {
    return fault(context, "10041", "There is no invoice \"none\" & nothing <like> it");
  }
  if (wanted == "locked") return fault(context, "10055", "Someone else has it");
  if (wanted == "elsewhere") return fault(context, "\"urn:codes\":10041", "Try elsewhere");
  if (wanted == "details") {
    return soap_receiver_fault(context, "Ask the ledger",
                               "<l:Line xmlns:l=\"urn:ledger\">7</l:Line>");
  }
  if (wanted == "fails") return soap_receiver_fault(context, "The ledger is closed", nullptr);
  result = wanted == "bell" ? text(context, "a\ab") : uid;
  return SOAP_OK;
}

int inv__getOrderReconcile(soap* context, Text uid, Text agent, Text&) {
  note(context, __func__, Json::array({shown(uid), shown(agent)}));
  return fault(context, "10012", std::string(agent) + " has none");
}

int inv__autoReconcileSingle(soap* context, Text uid, Text agent, Text date, Text&) {
  note(context, __func__, Json::array({shown(uid), shown(agent), shown(date)}));
  return fault(context, "10071", "Closed");
}

int sea__searchForAgents(soap* context, Text id, Text name, Text partner, Text state, Text country,
                         Text&) {
  note(context, __func__,
       Json::array({shown(id), shown(name), shown(partner), shown(state), shown(country)}));
  const std::string words = "Too many agents in " + std::string(state);
  return soap_receiver_fault(context, text(context, words), nullptr);
}

int sum__getRFQSummary(soap* context, Text quote, Text&) {
  note(context, __func__, Json::array({shown(quote)}));
  return soap_sender_fault(context, "Too early", nullptr);
}

// Single values.

int ord__getAcknowledgement(soap* context, Text gid, Text& result) {
  note(context, __func__, Json::array({shown(gid)}));
  result = text(context, "http://documents.example/" + std::string(gid) + ".pdf?a=1&b=2");
  return SOAP_OK;
}

int quo__canExpirationBeOveridden(soap* context, Text gid, bool& result) {
  note(context, __func__, Json::array({shown(gid)}));
  result = gid != nullptr && std::string(gid) == "Q-1";
  return SOAP_OK;
}

int quo__getNewPriceExpirationDate(soap* context, Text gid, time_t& result) {
  note(context, __func__, Json::array({shown(gid)}));
  const bool first = gid != nullptr && std::string(gid) == "Q-1";
  result = first ? kNewYear2007 + 4 * kDay : kNewYear2007 + 5 * kDay + 5400;
  return SOAP_OK;
}

int inv__getCommissionRange(soap* context, short count, int& result) {
  note(context, __func__, Json::array({shown(count)}));
  result = -count;
  return SOAP_OK;
}

int inv__getCommissionData(soap* context, Text key, LONG64& result) {
  note(context, __func__, Json::array({shown(key)}));
  result = 5000000000;
  return SOAP_OK;
}

int inv__getSAPCommissionData(soap* context, Text key, double& result) {
  note(context, __func__, Json::array({shown(key)}));
  result = INFINITY;
  return SOAP_OK;
}

int sum__getOrderSummary(soap* context, Text gid, double& result) {
  note(context, __func__, Json::array({shown(gid)}));
  result = 0.125;
  return SOAP_OK;
}

int inv__getSAPInvoice(soap* context, Text uid, inv__getSAPInvoiceResponse& response) {
  note(context, __func__, Json::array({shown(uid)}));
  response.return_ = nullptr;
  return SOAP_OK;
}

int mnt__getAllRemarks(soap* context, xsd__base64Binary& result) {
  note(context, __func__, Json::array({}));
  result.__size = 4;
  result.__ptr = reinterpret_cast<unsigned char*>(soap_malloc(context, 4));
  std::memcpy(result.__ptr,
              "\x00\xFF\x10"
              "A",
              4);
  return SOAP_OK;
}

int mnt__getUserLogoList(soap* context, mnt__getUserLogoListResponse&) {
  note(context, __func__, Json::array({}));
  return SOAP_OK;
}

int hrt__beat(soap* context, Text& result) {
  note(context, __func__, Json::array({}));
  result = text(context, "OK");
  return SOAP_OK;
}

// Lists, structures, and both in both.

int sea__searchForBrands(soap* context, Strings& result) {
  note(context, __func__, Json::array({}));
  result = strings(context, {"Gr\xC3\xBCn", "R & S", ""});
  return SOAP_OK;
}

int sea__searchForDefaultAgents(soap* context, Strings& result) {
  note(context, __func__, Json::array({}));
  result = strings(context, {});
  return SOAP_OK;
}

int sea__searchForPromotions(soap* context, Lists& result) {
  note(context, __func__, Json::array({}));
  result.__size = 3;
  result.__ptr = static_cast<Strings*>(soap_malloc(context, 3 * sizeof(Strings)));
  result.__ptr[0] = strings(context, {"a"});
  result.__ptr[1] = strings(context, {"b", "c"});
  result.__ptr[2] = strings(context, {});
  return SOAP_OK;
}

int sea__searchForManufacturers(soap* context, Manufacturers& result) {
  note(context, __func__, Json::array({}));
  result.__size = 2;
  result.__ptr = soap_new_Manufacturer(context, 2);
  result.__ptr[0].GID = text(context, "M-1");
  result.__ptr[0].Name = text(context, "A <b>");
  result.__ptr[1].GID = text(context, "M-2");
  result.__ptr[1].Name = nullptr;
  return SOAP_OK;
}

int sea__searchForSalesPeople(soap* context, Text agent, SalesPeople& result) {
  note(context, __func__, Json::array({shown(agent)}));
  result.Agent = agent;
  result.Count = 2;
  result.Share = 0.25;
  result.Active = true;
  result.Left = nullptr;
  result.Since = kNewYear2007 + 4 * kDay + 13 * 3600 + 4 * 60 + 9;
  result.Office.City = text(context, "Bonn");
  result.Office.Phones = strings(context, {"1", "2"});
  return SOAP_OK;
}

int sea__searchForSpecialCreditTerms(soap* context, CreditTerms& result) {
  note(context, __func__, Json::array({}));
  Address* const address = soap_new_Address(context);
  address->City = text(context, "Bonn");
  result.ShipTo = address;
  result.BillTo = address;
  result.Others.__size = 1;
  result.Others.__ptr = static_cast<Address**>(soap_malloc(context, sizeof(Address*)));
  result.Others.__ptr[0] = address;
  return SOAP_OK;
}

int sea__searchForAllDistCenters(soap* context, char*& result) {
  note(context, __func__, Json::array({}));
  result = text(context,
                "<Centers xmlns=\"urn:centers\" kind=\"all\"><Center nr=\"1\">K&amp;L</Center>"
                "</Centers>");
  return SOAP_OK;
}
