#include "bvconn/connectors/invoice/bv_invoice_connector.h"

#include <array>

#include "bvconn/core/session_state.h"
#include "bvconn/core/timing.h"
#include "bvconn/operation/method_frame.h"
#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn {
namespace {

using error_numbers::from_bits;

constexpr std::string_view kClass = "BVInvoiceConnector";
constexpr std::string_view kAgentPicture = "000";
constexpr std::string_view kDatePicture = "mm/dd/yyyy";

constexpr std::array kInvoiceFaults{
    FaultRow{.code = 10041, .number = from_bits(0x80042739)},
};
constexpr std::array kSaveFaults{
    FaultRow{.code = 10081, .number = from_bits(0x80042761)},
};
// Two codes of the server's are one error to the caller.
constexpr std::array kGetFaults{
    FaultRow{.code = 10011, .number = from_bits(0x8004271B)},
    FaultRow{.code = 10012, .number = from_bits(0x8004271B)},
};
constexpr std::array kAssociateFaults{
    FaultRow{.code = 10061, .number = from_bits(0x8004274D)},
};
constexpr std::array kAutoReconcileFaults{
    FaultRow{.code = 10071, .number = from_bits(0x80042757)},
};

constexpr Operation kInvoiceSearch{
    .log = {.cls = kClass, .method = "InvoiceSearch"},
    .method = &BVMethods::SearchForInvoices,
    .service = &BVServices::Invoice,
};
constexpr Operation kGetInvoice{
    .log = {.cls = kClass, .method = "GetInvoice"},
    .method = &BVMethods::GetInvoice,
    .service = &BVServices::Invoice,
    .tail = Tail::kFaultCode,
    .faults = kInvoiceFaults,
};
constexpr Operation kGetSAPInvoice{
    // Errors are logged under the operation above.
    .log = {.cls = kClass, .method = "GetSAPInvoice", .error = "GetInvoice"},
    .method = &BVMethods::GetSAPInvoice,
    .service = &BVServices::Invoice,
    .tail = Tail::kFaultCode,
    .faults = kInvoiceFaults,
};
constexpr Operation kSaveOrderReconcile{
    .log = {.cls = kClass, .method = "SaveOrderReconcile"},
    .method = &BVMethods::SaveOrderReconcile,
    .service = &BVServices::Invoice,
    .tail = Tail::kFaultCode,
    .faults = kSaveFaults,
};
constexpr Operation kGetOrderReconcile{
    .log = {.cls = kClass, .method = "GetOrderReconcile"},
    .method = &BVMethods::GetOrderReconcile,
    .service = &BVServices::Invoice,
    .tail = Tail::kFaultCode,
    .faults = kGetFaults,
};
constexpr Operation kGetNewReconicle{
    // The operation is misspelt, its row is not.
    .log = {.cls = kClass, .method = "GetNewReconicle"},
    .method = &BVMethods::GetNewReconcile,
    .service = &BVServices::Invoice,
};
constexpr Operation kGetCommissionStatement{
    .log = {.cls = kClass, .method = "GetCommissionStatement"},
    .method = &BVMethods::GetCommissionStatement,
    .service = &BVServices::Invoice,
};
constexpr Operation kGetSAPCommissionStatement{
    .log = {.cls = kClass, .method = "GetSAPCommissionStatement"},
    .method = &BVMethods::GetSAPCommissionStatement,
    .service = &BVServices::Invoice,
};
constexpr Operation kPilferOrderReconcile{
    .log = {.cls = kClass, .method = "PilferOrderReconcile"},
    .method = &BVMethods::PilferOrderReconcile,
    .service = &BVServices::Invoice,
};
constexpr Operation kUnlockOrderReconcile{
    .log = {.cls = kClass, .method = "UnlockOrderReconcile", .level = 0},
    .method = &BVMethods::UnlockOrderReconcile,
    .service = &BVServices::Invoice,
};
constexpr Operation kAssocInvoiceAndOrderReconcile{
    .log = {.cls = kClass, .method = "AssocInvoiceAndOrderReconcile"},
    .method = &BVMethods::AssocInvoiceAndOrderReconcile,
    .service = &BVServices::Invoice,
    .tail = Tail::kFaultCode,
    .faults = kAssociateFaults,
};
constexpr Operation kAutoReconcileSingle{
    .log = {.cls = kClass, .method = "AutoReconcileSingle"},
    .method = &BVMethods::AutoReconcileSingle,
    .service = &BVServices::Invoice,
    .tail = Tail::kFaultCode,
    .faults = kAutoReconcileFaults,
};
constexpr Operation kAutoReconcileMultiple{
    .log = {.cls = kClass, .method = "AutoReconcileMultiple", .level = 0},
    .method = &BVMethods::AutoReconcileMultiple,
    .service = &BVServices::Invoice,
    .tail = Tail::kFaultCode,
    .faults = kAutoReconcileFaults,
};
constexpr Operation kGetCommissionRange{
    .log = {.cls = kClass, .method = "GetCommissionRange"},
    .method = &BVMethods::GetCommissionRange,
    .service = &BVServices::Invoice,
};
constexpr Operation kGetCommissionRangeByAgent{
    // The row of the operation above: the number of parameters makes the difference.
    .log = {.cls = kClass, .method = "GetCommissionRangeByAgent"},
    .method = &BVMethods::GetCommissionRange,
    .service = &BVServices::Invoice,
};

// The server knows the parameters of this service by their place alone: nearly all bear one name.
void add(SoapNodes& parameters, const Variant& value) {
  parameters.Create("param", value, "", "", "");
}

void add_date(SoapNodes& parameters, std::string_view text) {
  add(parameters, conversions::format_text(text, kDatePicture));
}

SoapNode invoice(const Operation& operation, std::string_view aServerURL,
                 std::string_view aSessionID, std::string_view strInvoiceUID) {
  return ConnectorMethodFrame(operation, [&](Call& call) {
    add(call.getEnvelope(aSessionID), strInvoiceUID);
    return call.send(aServerURL).first();
  });
}

// The time line tells of the look-ups and the making of the request too, and a span that passes
// midnight is negative.
SoapNode commission_statement(const Operation& operation, std::string_view aServerURL,
                              std::string_view aSessionID, std::string_view aCommKey) {
  return ConnectorMethodFrame(operation, [&](Call& call) {
    const float start = timer_seconds();
    add(call.getEnvelope(aSessionID), aCommKey);
    SoapNode result = call.send(aServerURL).first();
    const float seconds = timer_seconds() - start;
    session().Logger().LogInfo(kClass, operation.log.method,
                               "Time to send and get response: " +
                                   conversions::format_number(seconds, "0.00") + " seconds.",
                               0);
    return result;
  });
}

}  // namespace

SoapNode BVInvoiceConnector::InvoiceSearch(std::string_view aServerURL, std::string_view aSessionID,
                                           const InvoiceSearchCriteria& criteria) {
  return ConnectorMethodFrame(kInvoiceSearch, [&](Call& call) {
    auto& parameters = call.getEnvelope(aSessionID);
    add(parameters, criteria.strInvoiceNumber);
    add(parameters, criteria.strPONumber);
    add(parameters, criteria.strProjectName);
    add(parameters, criteria.strManufacturer);
    add(parameters, criteria.strManufacturerOrderNumber);
    add(parameters, criteria.strStatus);
    add(parameters, criteria.strCustomerGID);
    // The last of the four in the interface is the second on the wire.
    add(parameters, criteria.strCustomerSoldToName);
    add(parameters, criteria.strCustomerAccountNumber);
    add(parameters, criteria.strPartnerID);
    add(parameters, conversions::format_text(criteria.strAgent, kAgentPicture));
    add(parameters, criteria.strTorvexOrderNumber);
    add_date(parameters, criteria.strInvoiceDateFrom);
    add_date(parameters, criteria.strInvoiceDateTo);
    add_date(parameters, criteria.strPayPeriodDateFrom);
    add_date(parameters, criteria.strPayPeriodDateTo);
    return call.send(aServerURL).first();
  });
}

SoapNode BVInvoiceConnector::GetInvoice(std::string_view aServerURL, std::string_view aSessionID,
                                        std::string_view strInvoiceUID) {
  return invoice(kGetInvoice, aServerURL, aSessionID, strInvoiceUID);
}

SoapNode BVInvoiceConnector::GetSAPInvoice(std::string_view aServerURL, std::string_view aSessionID,
                                           std::string_view strInvoiceUID) {
  return invoice(kGetSAPInvoice, aServerURL, aSessionID, strInvoiceUID);
}

SoapNode BVInvoiceConnector::SaveOrderReconcile(std::string_view aServerURL,
                                                std::string_view aSessionID,
                                                const SoapNode& aSoapNode) {
  return ConnectorMethodFrame(kSaveOrderReconcile, [&](Call& call) {
    // The one operation here that fills its envelope by hand, and that names its parameter.
    call.envelope(aSessionID).Create("BVOrderReconcileBean", aSoapNode, "", "", "");
    return call.send(aServerURL).first();
  });
}

SoapNode BVInvoiceConnector::GetOrderReconcile(std::string_view aServerURL,
                                               std::string_view aSessionID, std::string_view aUID,
                                               std::string_view aAgentID) {
  return ConnectorMethodFrame(kGetOrderReconcile, [&](Call& call) {
    auto& parameters = call.getEnvelope(aSessionID);
    add(parameters, aUID);
    add(parameters, aAgentID);
    return call.send(aServerURL).first();
  });
}

SoapNode BVInvoiceConnector::GetNewReconicle(std::string_view aServerURL,
                                             std::string_view aSessionID, std::string_view aAgentID,
                                             const Variant& strUIDs) {
  return ConnectorMethodFrame(kGetNewReconicle, [&](Call& call) {
    auto& parameters = call.getEnvelope(aSessionID);
    add(parameters, aAgentID);
    if (!strUIDs.missing()) add(parameters, strUIDs);
    return call.send(aServerURL).first();
  });
}

SoapNode BVInvoiceConnector::GetCommissionStatement(std::string_view aServerURL,
                                                    std::string_view aSessionID,
                                                    std::string_view aCommKey) {
  return commission_statement(kGetCommissionStatement, aServerURL, aSessionID, aCommKey);
}

SoapNode BVInvoiceConnector::GetSAPCommissionStatement(std::string_view aServerURL,
                                                       std::string_view aSessionID,
                                                       std::string_view aCommKey) {
  return commission_statement(kGetSAPCommissionStatement, aServerURL, aSessionID, aCommKey);
}

std::string BVInvoiceConnector::PilferOrderReconcile(std::string_view aServerURL,
                                                     std::string_view aSessionID,
                                                     std::string_view aGID) {
  return ConnectorMethodFrame(kPilferOrderReconcile, [&](Call& call) {
    add(call.getEnvelope(aSessionID), aGID);
    return call.send(aServerURL).text();
  });
}

void BVInvoiceConnector::UnlockOrderReconcile(std::string_view aServerURL,
                                              std::string_view aSessionID, std::string_view aGID,
                                              bool blnUnassociate, std::string_view aAgentID) {
  ConnectorMethodFrame(kUnlockOrderReconcile, [&](Call& call) {
    auto& parameters = call.getEnvelope(aSessionID);
    add(parameters, aGID);
    add(parameters, blnUnassociate);
    add(parameters, aAgentID);
    call.send(aServerURL);
  });
}

SoapNode BVInvoiceConnector::AssocInvoiceAndOrderReconcile(std::string_view aServerURL,
                                                           std::string_view aSessionID,
                                                           std::string_view aInvoiceNumber,
                                                           std::string_view aReconcileGID,
                                                           std::string_view aAgentID) {
  return ConnectorMethodFrame(kAssocInvoiceAndOrderReconcile, [&](Call& call) {
    auto& parameters = call.getEnvelope(aSessionID);
    add(parameters, aInvoiceNumber);
    add(parameters, aReconcileGID);
    add(parameters, aAgentID);
    return call.send(aServerURL).first();
  });
}

SoapNode BVInvoiceConnector::AutoReconcileSingle(std::string_view aServerURL,
                                                 std::string_view aSessionID,
                                                 std::string_view aInvoiceUID,
                                                 std::string_view aAgentID,
                                                 std::string_view strPayPeriodDate) {
  return ConnectorMethodFrame(kAutoReconcileSingle, [&](Call& call) {
    auto& parameters = call.getEnvelope(aSessionID);
    add(parameters, aInvoiceUID);
    add(parameters, aAgentID);
    add_date(parameters, strPayPeriodDate);
    return call.send(aServerURL).first();
  });
}

void BVInvoiceConnector::AutoReconcileMultiple(std::string_view aServerURL,
                                               std::string_view aSessionID, const Variant& strUIDs,
                                               std::string_view aAgentID,
                                               std::string_view strPayPeriodDate) {
  ConnectorMethodFrame(kAutoReconcileMultiple, [&](Call& call) {
    auto& parameters = call.getEnvelope(aSessionID);
    add(parameters, strUIDs);
    add(parameters, aAgentID);
    add_date(parameters, strPayPeriodDate);
    call.send(aServerURL);
  });
}

SoapNode BVInvoiceConnector::GetCommissionRange(std::string_view aServerURL,
                                                std::string_view aSessionID,
                                                std::int16_t aListCount) {
  return ConnectorMethodFrame(kGetCommissionRange, [&](Call& call) {
    add(call.getEnvelope(aSessionID), aListCount);
    return call.send(aServerURL).first();
  });
}

SoapNode BVInvoiceConnector::GetCommissionRangeByAgent(std::string_view aServerURL,
                                                       std::string_view aSessionID,
                                                       std::int16_t aListCount,
                                                       std::string_view aAgentID) {
  return ConnectorMethodFrame(kGetCommissionRangeByAgent, [&](Call& call) {
    auto& parameters = call.getEnvelope(aSessionID);
    add(parameters, aListCount);
    add(parameters, conversions::text_to_int16(aAgentID));
    return call.send(aServerURL).first();
  });
}

}  // namespace bvconn
