#include "bvconn/connectors/invoice/bv_invoice_connector.h"

#include <array>

#include "bvconn/core/session_state.h"
#include "bvconn/core/timing.h"
#include "bvconn/operation/method_frame.h"
#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error_numbers.h"

namespace bvconn {
namespace {

constexpr std::string_view kClass = "BVInvoiceConnector";
constexpr std::string_view kAgentPicture = "000";
constexpr std::string_view kDatePicture = "mm/dd/yyyy";

constexpr std::array kInvoiceFaults{
    FaultRow{.code = 10041, .number = error_numbers::kInvoiceFault},
};
constexpr std::array kSaveReconcileFaults{
    FaultRow{.code = 10081, .number = error_numbers::kSaveReconcileFault},
};
// deliberate [two-codes-one-error]: two codes of the server's are one error to the caller.
constexpr std::array kGetReconcileFaults{
    FaultRow{.code = 10011, .number = error_numbers::kGetReconcileFault},
    FaultRow{.code = 10012, .number = error_numbers::kGetReconcileFault},
};
constexpr std::array kAssociateFaults{
    FaultRow{.code = 10061, .number = error_numbers::kAssociateFault},
};
constexpr std::array kAutoReconcileFaults{
    FaultRow{.code = 10071, .number = error_numbers::kAutoReconcileFault},
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
    // deliberate [sap-invoice-log-name]: errors are logged under the operation above.
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
    .faults = kSaveReconcileFaults,
};
constexpr Operation kGetOrderReconcile{
    .log = {.cls = kClass, .method = "GetOrderReconcile"},
    .method = &BVMethods::GetOrderReconcile,
    .service = &BVServices::Invoice,
    .tail = Tail::kFaultCode,
    .faults = kGetReconcileFaults,
};
constexpr Operation kGetNewReconicle{
    // deliberate [misspelt-reconicle]: the operation is misspelt, its row is not.
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
// deliberate [level-zero]: lines of level 0, here and in `kAutoReconcileMultiple`.
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
// deliberate [level-zero]: see above.
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
    // deliberate [range-row]: the row of the operation above; the number of parameters makes the
    // difference.
    .log = {.cls = kClass, .method = "GetCommissionRangeByAgent"},
    .method = &BVMethods::GetCommissionRange,
    .service = &BVServices::Invoice,
};

// deliberate [statement-time]: the time line tells of the look-ups and the making of the request
// too, and a span that passes midnight is negative.
SoapNode commission_statement(const Operation& operation, const CallContext& context,
                              std::string_view aCommKey) {
  return ConnectorMethodFrame(operation, context, [&](Call& call) {
    const float start = timer_seconds();
    SoapNode result = call.getEnvelope().params(aCommKey).send().first();
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
  return ConnectorMethodFrame(kInvoiceSearch, {aServerURL, aSessionID}, [&](Call& call) {
    call.getEnvelope()
        .params(criteria.strInvoiceNumber, criteria.strPONumber, criteria.strProjectName,
                criteria.strManufacturer, criteria.strManufacturerOrderNumber, criteria.strStatus,
                criteria.strCustomerGID)
        // deliberate [sold-to-order]: the last of the four in the interface is the second on the
        // wire.
        .params(criteria.strCustomerSoldToName, criteria.strCustomerAccountNumber,
                criteria.strPartnerID)
        .params(conversions::format_text(criteria.strAgent, kAgentPicture))
        .params(criteria.strTorvexOrderNumber)
        .params(conversions::format_text(criteria.strInvoiceDateFrom, kDatePicture))
        .params(conversions::format_text(criteria.strInvoiceDateTo, kDatePicture))
        .params(conversions::format_text(criteria.strPayPeriodDateFrom, kDatePicture))
        .params(conversions::format_text(criteria.strPayPeriodDateTo, kDatePicture));
    return call.send().first();
  });
}

SoapNode BVInvoiceConnector::GetInvoice(std::string_view aServerURL, std::string_view aSessionID,
                                        std::string_view strInvoiceUID) {
  return ConnectorMethodFrame(kGetInvoice, {aServerURL, aSessionID}, [&](Call& call) {
    return call.getEnvelope().params(strInvoiceUID).send().first();
  });
}

SoapNode BVInvoiceConnector::GetSAPInvoice(std::string_view aServerURL, std::string_view aSessionID,
                                           std::string_view strInvoiceUID) {
  return ConnectorMethodFrame(kGetSAPInvoice, {aServerURL, aSessionID}, [&](Call& call) {
    return call.getEnvelope().params(strInvoiceUID).send().first();
  });
}

SoapNode BVInvoiceConnector::SaveOrderReconcile(std::string_view aServerURL,
                                                std::string_view aSessionID,
                                                const SoapNode& aSoapNode) {
  return ConnectorMethodFrame(kSaveOrderReconcile, {aServerURL, aSessionID}, [&](Call& call) {
    // deliberate [reconcile-by-hand]: the one operation here that fills its envelope by hand, and
    // that names its parameter.
    return call.request().add("BVOrderReconcileBean", aSoapNode).send().first();
  });
}

SoapNode BVInvoiceConnector::GetOrderReconcile(std::string_view aServerURL,
                                               std::string_view aSessionID, std::string_view aUID,
                                               std::string_view aAgentID) {
  return ConnectorMethodFrame(kGetOrderReconcile, {aServerURL, aSessionID}, [&](Call& call) {
    return call.getEnvelope().params(aUID, aAgentID).send().first();
  });
}

SoapNode BVInvoiceConnector::GetNewReconicle(std::string_view aServerURL,
                                             std::string_view aSessionID, std::string_view aAgentID,
                                             const Variant& strUIDs) {
  return ConnectorMethodFrame(kGetNewReconicle, {aServerURL, aSessionID}, [&](Call& call) {
    call.getEnvelope().params(aAgentID);
    // deliberate [left-out-keys]: left out, they are no parameter, where others send nil.
    if (!strUIDs.missing()) call.params(strUIDs);
    return call.send().first();
  });
}

SoapNode BVInvoiceConnector::GetCommissionStatement(std::string_view aServerURL,
                                                    std::string_view aSessionID,
                                                    std::string_view aCommKey) {
  return commission_statement(kGetCommissionStatement, {aServerURL, aSessionID}, aCommKey);
}

SoapNode BVInvoiceConnector::GetSAPCommissionStatement(std::string_view aServerURL,
                                                       std::string_view aSessionID,
                                                       std::string_view aCommKey) {
  return commission_statement(kGetSAPCommissionStatement, {aServerURL, aSessionID}, aCommKey);
}

std::string BVInvoiceConnector::PilferOrderReconcile(std::string_view aServerURL,
                                                     std::string_view aSessionID,
                                                     std::string_view aGID) {
  return ConnectorMethodFrame(kPilferOrderReconcile, {aServerURL, aSessionID}, [&](Call& call) {
    return call.getEnvelope().params(aGID).send().text();
  });
}

void BVInvoiceConnector::UnlockOrderReconcile(std::string_view aServerURL,
                                              std::string_view aSessionID, std::string_view aGID,
                                              bool blnUnassociate, std::string_view aAgentID) {
  ConnectorMethodFrame(kUnlockOrderReconcile, {aServerURL, aSessionID}, [&](Call& call) {
    // deliberate [unlock-boolean]: the one boolean that bears the name of all the others here.
    call.getEnvelope().params(aGID).add("param", blnUnassociate).params(aAgentID).send().or_raise();
  });
}

SoapNode BVInvoiceConnector::AssocInvoiceAndOrderReconcile(std::string_view aServerURL,
                                                           std::string_view aSessionID,
                                                           std::string_view aInvoiceNumber,
                                                           std::string_view aReconcileGID,
                                                           std::string_view aAgentID) {
  return ConnectorMethodFrame(
      kAssocInvoiceAndOrderReconcile, {aServerURL, aSessionID}, [&](Call& call) {
        return call.getEnvelope().params(aInvoiceNumber, aReconcileGID, aAgentID).send().first();
      });
}

SoapNode BVInvoiceConnector::AutoReconcileSingle(std::string_view aServerURL,
                                                 std::string_view aSessionID,
                                                 std::string_view aInvoiceUID,
                                                 std::string_view aAgentID,
                                                 std::string_view strPayPeriodDate) {
  return ConnectorMethodFrame(kAutoReconcileSingle, {aServerURL, aSessionID}, [&](Call& call) {
    call.getEnvelope().params(aInvoiceUID, aAgentID,
                              conversions::format_text(strPayPeriodDate, kDatePicture));
    return call.send().first();
  });
}

void BVInvoiceConnector::AutoReconcileMultiple(std::string_view aServerURL,
                                               std::string_view aSessionID, const Variant& strUIDs,
                                               std::string_view aAgentID,
                                               std::string_view strPayPeriodDate) {
  ConnectorMethodFrame(kAutoReconcileMultiple, {aServerURL, aSessionID}, [&](Call& call) {
    call.getEnvelope().params(strUIDs, aAgentID,
                              conversions::format_text(strPayPeriodDate, kDatePicture));
    call.send().or_raise();
  });
}

SoapNode BVInvoiceConnector::GetCommissionRange(std::string_view aServerURL,
                                                std::string_view aSessionID,
                                                std::int16_t aListCount) {
  return ConnectorMethodFrame(kGetCommissionRange, {aServerURL, aSessionID}, [&](Call& call) {
    return call.getEnvelope().params(aListCount).send().first();
  });
}

SoapNode BVInvoiceConnector::GetCommissionRangeByAgent(std::string_view aServerURL,
                                                       std::string_view aSessionID,
                                                       std::int16_t aListCount,
                                                       std::string_view aAgentID) {
  return ConnectorMethodFrame(
      kGetCommissionRangeByAgent, {aServerURL, aSessionID}, [&](Call& call) {
        // deliberate [agent-digits]: leading zeros are lost, which InvoiceSearch fills in.
        call.getEnvelope().params(aListCount, conversions::text_to_int16(aAgentID));
        return call.send().first();
      });
}

}  // namespace bvconn
