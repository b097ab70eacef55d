#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn {

/// What `BVInvoiceConnector::InvoiceSearch` looks for. All sixteen criteria are sent, always, since
/// the server knows each by its place: what "" or a missing one means is the server's business. The
/// texts are views: they have to live as long as the call.
struct InvoiceSearchCriteria {
  std::string_view strInvoiceNumber{};
  std::string_view strPONumber{};
  std::string_view strProjectName{};
  std::string_view strManufacturer{};
  std::string_view strManufacturerOrderNumber{};
  std::string_view strStatus{};
  // deliberate [str-variants]: variants in spite of their names; each is sent with its own type, a
  // missing one as nil.
  Variant strCustomerGID = Variant::Missing{};
  Variant strCustomerAccountNumber = Variant::Missing{};
  Variant strPartnerID = Variant::Missing{};
  Variant strCustomerSoldToName = Variant::Missing{};
  /// A number is sent with at least three digits: "7" as "007".
  std::string_view strAgent{};
  std::string_view strTorvexOrderNumber{};
  // Dates, read month first (a bare number as a serial day), are sent as "mm/dd/yyyy"; what reads
  // as none, as it stands.
  std::string_view strInvoiceDateFrom{};
  std::string_view strInvoiceDateTo{};
  std::string_view strPayPeriodDateFrom{};
  std::string_view strPayPeriodDateTo{};
};

/// Invoices, order reconciles and commission statements. Always by SOAP, with the default time-out.
/// Service "urn:InvoiceService". Keys and agents go out as they stand, "" too, unless stated
/// otherwise.
///
/// Threads: one object per thread. Errors: every failure leaves as `Error`. A server fault is
/// 0x80044201 with the server's text; where an operation maps a fault code, that fault is an error
/// of its own number with the source "BVInvoiceConnector" and no description. Node results are the
/// reply's first parameter, text results its value; a reply without one fails with 0x80044204.
class BVCONN_EXPORT BVInvoiceConnector {
 public:
  /// The invoices that meet the criteria, none of which is left out of the request.
  /// Route: SOAP `searchForInvoices`.
  SoapNode InvoiceSearch(std::string_view aServerURL, std::string_view aSessionID,
                         const InvoiceSearchCriteria& criteria = {});
  /// One invoice. Route: SOAP `getInvoice`.
  /// @throws Error  0x80042739 for the fault code 10041.
  SoapNode GetInvoice(std::string_view aServerURL, std::string_view aSessionID,
                      std::string_view strInvoiceUID);
  /// One invoice as SAP has it; its errors are logged under `GetInvoice`,
  /// deliberate [sap-invoice-log-name].
  /// Route: SOAP `getSAPInvoice`.
  /// @throws Error  0x80042739 for the fault code 10041.
  SoapNode GetSAPInvoice(std::string_view aServerURL, std::string_view aSessionID,
                         std::string_view strInvoiceUID);
  /// What the server says to an order reconcile that it saves: its content is sent under the name
  /// "BVOrderReconcileBean", an empty reference as nil. Route: SOAP `saveOrderReconcile`.
  /// @throws Error  0x80042761 for the fault code 10081.
  SoapNode SaveOrderReconcile(std::string_view aServerURL, std::string_view aSessionID,
                              const SoapNode& aSoapNode);
  /// One order reconcile. Route: SOAP `getOrderReconcile`.
  /// @throws Error  0x8004271B for the fault codes 10011 and 10012, one for both:
  /// deliberate [two-codes-one-error].
  SoapNode GetOrderReconcile(std::string_view aServerURL, std::string_view aSessionID,
                             std::string_view aUID, std::string_view aAgentID);
  /// A new order reconcile. Route: SOAP `getNewReconcile`.
  /// @param strUIDs  Keys, as a rule an array of strings; sent as one value, whatever it holds. The
  ///                 parameter is left out when it is missing; an empty array is sent.
  SoapNode GetNewReconicle(std::string_view aServerURL, std::string_view aSessionID,
                           std::string_view aAgentID, const Variant& strUIDs = Variant::Missing{});
  /// A commission statement; the time it took is logged. Route: SOAP `getCommissionData`.
  SoapNode GetCommissionStatement(std::string_view aServerURL, std::string_view aSessionID,
                                  std::string_view aCommKey);
  /// As `GetCommissionStatement`, from SAP. Route: SOAP `getSAPCommissionData`.
  SoapNode GetSAPCommissionStatement(std::string_view aServerURL, std::string_view aSessionID,
                                     std::string_view aCommKey);
  /// What the server says to the taking over of an order reconcile's lock, as text; an array or a
  /// node fails with error 13. Route: SOAP `pilferOrderReconcile`.
  std::string PilferOrderReconcile(std::string_view aServerURL, std::string_view aSessionID,
                                   std::string_view aGID);
  /// Unlocks an order reconcile; nothing of the reply but a fault is looked at. `blnUnassociate` is
  /// always sent, false too. Route: SOAP `unlockOrderReconcile`.
  void UnlockOrderReconcile(std::string_view aServerURL, std::string_view aSessionID,
                            std::string_view aGID, bool blnUnassociate, std::string_view aAgentID);
  /// What the server says to the tying of an invoice to an order reconcile.
  /// Route: SOAP `assocInvoiceAndOrderReconcile`.
  /// @throws Error  0x8004274D for the fault code 10061.
  SoapNode AssocInvoiceAndOrderReconcile(std::string_view aServerURL, std::string_view aSessionID,
                                         std::string_view aInvoiceNumber,
                                         std::string_view aReconcileGID, std::string_view aAgentID);
  /// The reconcile of one invoice. Route: SOAP `autoReconcileSingle`.
  /// @param strPayPeriodDate  As the dates of `InvoiceSearchCriteria`; always sent, "" too.
  /// @throws Error  0x80042757 for the fault code 10071.
  SoapNode AutoReconcileSingle(std::string_view aServerURL, std::string_view aSessionID,
                               std::string_view aInvoiceUID, std::string_view aAgentID,
                               std::string_view strPayPeriodDate = "");
  /// Reconciles several invoices; nothing of the reply but a fault is looked at.
  /// Route: SOAP `autoReconcileMultiple`.
  /// @param strUIDs           As for `GetNewReconicle`, but always sent, a missing one as nil.
  /// @param strPayPeriodDate  As for `AutoReconcileSingle`.
  /// @throws Error  0x80042757 for the fault code 10071.
  void AutoReconcileMultiple(std::string_view aServerURL, std::string_view aSessionID,
                             const Variant& strUIDs, std::string_view aAgentID,
                             std::string_view strPayPeriodDate = "");
  /// The last commission periods; what `aListCount` counts is the server's business.
  /// Route: SOAP `getCommissionRange`.
  SoapNode GetCommissionRange(std::string_view aServerURL, std::string_view aSessionID,
                              std::int16_t aListCount);
  /// The same for one agent: the server tells the two apart by the number of parameters.
  /// Route: SOAP `getCommissionRange`.
  /// @param aAgentID  Sent as a 16-bit integer, so without leading zeros; text that is none fails
  ///                  with error 13, one out of range with error 6, before anything is sent.
  SoapNode GetCommissionRangeByAgent(std::string_view aServerURL, std::string_view aSessionID,
                                     std::int16_t aListCount, std::string_view aAgentID);
};

}  // namespace bvconn
