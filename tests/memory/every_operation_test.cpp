#include <gtest/gtest.h>

#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "bvconn/automation/interface.h"
#include "bvconn/connectors/documents/bv_acknowledgement_connector.h"
#include "bvconn/connectors/documents/bv_order_connector.h"
#include "bvconn/connectors/documents/bv_project_connector.h"
#include "bvconn/connectors/documents/bv_quote_connector.h"
#include "bvconn/connectors/documents/bv_request_for_quote_connector.h"
#include "bvconn/connectors/documents/bv_rma_connector.h"
#include "bvconn/connectors/documents/bv_sales_instrument_connector.h"
#include "bvconn/connectors/documents/bv_submittal_connector.h"
#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/connectors/maintenance/bv_maintenance_connector.h"
#include "bvconn/connectors/print/bv_print_connector.h"
#include "bvconn/connectors/search/bv_search_connector.h"
#include "bvconn/connectors/session/bv_config_connector.h"
#include "bvconn/connectors/session/bv_document_connector.h"
#include "bvconn/connectors/session/bv_export_connector.h"
#include "bvconn/connectors/session/bv_generic_connector.h"
#include "bvconn/connectors/session/bv_heart_beat_connector.h"
#include "bvconn/connectors/session/bv_postal_connector.h"
#include "bvconn/connectors/session/bv_summary_connector.h"
#include "bvconn/dal/bv_connector_object.h"
#include "memory/failing_memory.h"
#include "memory/quiet_world.h"

// Every operation of the interface, with each of its allocations failing in turn: whatever it makes
// of that, nothing but an Error leaves it.
namespace bvconn {
namespace {

using test::FailingMemory;
using test::QuietWorld;
using test::Shortage;

constexpr std::string_view kText = "a-text-of-more-than-fifteen-letters";

/// An argument that takes memory where its type can.
template <class T>
T sample() {
  if constexpr (std::is_same_v<T, std::string_view>) {
    return kText;
  } else if constexpr (std::is_same_v<T, Variant>) {
    return Variant(std::string(kText));
  } else if constexpr (std::is_same_v<T, StringArray>) {
    return StringArray{std::string(kText), std::string(kText)};
  } else if constexpr (std::is_same_v<T, SoapNode>) {
    const SoapNode node = SoapNode::make("Project");
    node.Nodes().Create("Name", kText);
    return node;
  } else if constexpr (std::is_same_v<T, XMLDocument*>) {
    static XMLDocument document;
    return &document;
  } else {
    return T{};
  }
}

struct Ending {
  bool struck = false;
  bool foreign = false;
};

template <class C, class... A, class Function>
Ending ending_of(Function function, std::size_t failing, Shortage shortage) {
  C object;
  std::tuple<std::remove_cvref_t<A>...> arguments{sample<std::remove_cvref_t<A>>()...};
  Ending ending;
  const FailingMemory memory(failing, shortage);
  try {
    std::apply([&](auto&... each) { (object.*function)(each...); }, arguments);
  } catch (const Error&) {
  } catch (...) {
    ending.foreign = true;
  }
  ending.struck = FailingMemory::has_struck();
  return ending;
}

template <auto function>
struct Runner;
template <class C, class R, class... A, R (C::*function)(A...)>
struct Runner<function> {
  static Ending run(std::size_t failing, Shortage shortage) {
    return ending_of<C, A...>(function, failing, shortage);
  }
};
template <class C, class R, class... A, R (C::*function)(A...) const>
struct Runner<function> {
  static Ending run(std::size_t failing, Shortage shortage) {
    return ending_of<C, A...>(function, failing, shortage);
  }
};

struct Row {
  std::string name;
  Ending (*run)(std::size_t failing, Shortage shortage);
};

#define ROW(cls, operation)                              \
  Row {                                                  \
#cls "." #operation, Runner < &cls::operation> ::run \
  }

// clang-format off
const std::vector<Row>& rows() {
  static const std::vector<Row> list{
    ROW(BVAcknowledgementConnector, getOverview),
    ROW(BVAcknowledgementConnector, GetExistingAcknowledgement),
    ROW(BVAcknowledgementConnector, getNewAcknowledgment),
    ROW(BVOrderConnector, getSAPOrderView),
    ROW(BVOrderConnector, getSAPInfo),
    ROW(BVProjectConnector, CopyProject),
    ROW(BVProjectConnector, generateQuotes),
    ROW(BVProjectConnector, getNewProject),
    ROW(BVProjectConnector, getExistingProject),
    ROW(BVProjectConnector, getRevertedProject),
    ROW(BVProjectConnector, setStatusToNegotiating),
    ROW(BVProjectConnector, setStatusToLostOpportunity),
    ROW(BVProjectConnector, SaveProject),
    ROW(BVProjectConnector, RequestReview),
    ROW(BVProjectConnector, ReturnToAgent),
    ROW(BVProjectConnector, CheckSingleSaveStatus),
    ROW(BVQuoteConnector, getExistingQuote),
    ROW(BVQuoteConnector, SetQuoteStatusToQuoted),
    ROW(BVQuoteConnector, canExpirationBeOveridden),
    ROW(BVQuoteConnector, getNewPriceExpirationDate),
    ROW(BVRequestForQuoteConnector, updateRFQ),
    ROW(BVRequestForQuoteConnector, getRFQs),
    ROW(BVRMAConnector, GetNewRMA),
    ROW(BVRMAConnector, GetExistingRMA),
    ROW(BVRMAConnector, SaveRMA),
    ROW(BVRMAConnector, SubmitRMA),
    ROW(BVRMAConnector, openRMA),
    ROW(BVRMAConnector, GetInvoiceInfo),
    ROW(BVSalesInstrumentConnector, GetProductApprovals),
    ROW(BVSalesInstrumentConnector, GetHeaderComments),
    ROW(BVSalesInstrumentConnector, GetLineComments),
    ROW(BVSalesInstrumentConnector, UpdateHeaderComments),
    ROW(BVSalesInstrumentConnector, SetLineComments),
    ROW(BVSalesInstrumentConnector, getPreviousSalesInstrumentColumnPrices),
    ROW(BVSalesInstrumentConnector, pilferSalesInstrument),
    ROW(BVSalesInstrumentConnector, UpdateCommSalesPeople),
    ROW(BVSalesInstrumentConnector, GetProductCost),
    ROW(BVSalesInstrumentConnector, GetOrderHeaderComments),
    ROW(BVSalesInstrumentConnector, GetQuoteHeaderComments),
    ROW(BVSalesInstrumentConnector, getHeaderCommentsForCopyToOrder),
    ROW(BVSalesInstrumentConnector, GetProjectHeaderComments),
    ROW(BVSalesInstrumentConnector, UpdateOrderHeaderComments),
    ROW(BVSalesInstrumentConnector, UpdateQuoteHeaderComments),
    ROW(BVSalesInstrumentConnector, UpdateProjectHeaderComments),
    ROW(BVSubmittalConnector, GetAllParagraphs),
    ROW(BVSubmittalConnector, GetAllRemarks),
    ROW(BVSubmittalConnector, GetSubmittal),
    ROW(BVSubmittalConnector, GetSubmittalCriteria),
    ROW(BVSubmittalConnector, GetSubmittalCommentsForProjectLineItem),
    ROW(BVSubmittalConnector, GetSubmittalCommentsForProjectLineItems),
    ROW(BVSubmittalConnector, GetSubmittalCommentsForQuoteLineItem),
    ROW(BVSubmittalConnector, GetSubmittalCommentsForQuoteLineItems),
    ROW(BVSubmittalConnector, CreateSubmittal),
    ROW(BVSubmittalConnector, ReviseSubmittal),
    ROW(BVSubmittalConnector, UpdateSubmittal),
    ROW(BVSubmittalConnector, GetAllSubmittalsForProject),
    ROW(BVSubmittalConnector, GetAllSubmittalsForQuote),
    ROW(BVSubmittalConnector, GetUpdatableSubmittalsForProject),
    ROW(BVSubmittalConnector, GetUpdatableSubmittalsForQuote),
    ROW(BVInvoiceConnector, InvoiceSearch),
    ROW(BVInvoiceConnector, GetInvoice),
    ROW(BVInvoiceConnector, GetSAPInvoice),
    ROW(BVInvoiceConnector, SaveOrderReconcile),
    ROW(BVInvoiceConnector, GetOrderReconcile),
    ROW(BVInvoiceConnector, GetNewReconicle),
    ROW(BVInvoiceConnector, GetCommissionStatement),
    ROW(BVInvoiceConnector, GetSAPCommissionStatement),
    ROW(BVInvoiceConnector, PilferOrderReconcile),
    ROW(BVInvoiceConnector, UnlockOrderReconcile),
    ROW(BVInvoiceConnector, AssocInvoiceAndOrderReconcile),
    ROW(BVInvoiceConnector, AutoReconcileSingle),
    ROW(BVInvoiceConnector, AutoReconcileMultiple),
    ROW(BVInvoiceConnector, GetCommissionRange),
    ROW(BVInvoiceConnector, GetCommissionRangeByAgent),
    ROW(BVMaintenanceConnector, GetAllParagraphs),
    ROW(BVMaintenanceConnector, CreateParagraph),
    ROW(BVMaintenanceConnector, UpdateParagraph),
    ROW(BVMaintenanceConnector, DeleteParagraph),
    ROW(BVMaintenanceConnector, OrderParagraphs),
    ROW(BVMaintenanceConnector, GetAllRemarks),
    ROW(BVMaintenanceConnector, CreateRemark),
    ROW(BVMaintenanceConnector, UpdateRemark),
    ROW(BVMaintenanceConnector, DeleteRemark),
    ROW(BVMaintenanceConnector, OrderRemarks),
    ROW(BVMaintenanceConnector, GetUserLogo),
    ROW(BVMaintenanceConnector, GetUserLogoList),
    ROW(BVMaintenanceConnector, SetUserLogo),
    ROW(BVMaintenanceConnector, UpdatePassword),
    ROW(BVMaintenanceConnector, SaveQuotePrintoutDefault),
    ROW(BVMaintenanceConnector, SaveAgentQuotePrintoutDefault),
    ROW(BVMaintenanceConnector, SaveAgentOrderPrintoutDefault),
    ROW(BVMaintenanceConnector, SaveAgentProjectPrintoutDefault),
    ROW(BVMaintenanceConnector, SaveAgentSAPPrintoutDefault),
    ROW(BVMaintenanceConnector, SaveAgentOrderSubmitPrintoutDefault),
    ROW(BVMaintenanceConnector, SaveAgentRFQPrintoutDefault),
    ROW(BVMaintenanceConnector, GetAgentQuotePrintoutDefault),
    ROW(BVMaintenanceConnector, GetAgentOrderPrintoutDefault),
    ROW(BVMaintenanceConnector, GetAgentSAPPrintoutDefault),
    ROW(BVMaintenanceConnector, GetAgentProjectPrintoutDefault),
    ROW(BVMaintenanceConnector, GetAgentOrderSubmitPrintoutDefault),
    ROW(BVMaintenanceConnector, GetAgentRFQPrintoutDefault),
    ROW(BVMaintenanceConnector, SetUserProfile),
    ROW(BVMaintenanceConnector, SetUserQuotePrintoutDefault),
    ROW(BVMaintenanceConnector, SetUserOrderPrintoutDefault),
    ROW(BVMaintenanceConnector, SetUserOrderSubmitPrintoutDefault),
    ROW(BVMaintenanceConnector, SetUserSAPPrintoutDefault),
    ROW(BVMaintenanceConnector, SetUserProjectPrintoutDefault),
    ROW(BVMaintenanceConnector, SetUserRFQPrintoutDefault),
    ROW(BVMaintenanceConnector, GetUserQuotePrintoutDefault),
    ROW(BVMaintenanceConnector, SaveOrderPrintoutDefault),
    ROW(BVMaintenanceConnector, SaveSAPPrintoutDefault),
    ROW(BVMaintenanceConnector, SaveProjectPrintoutDefault),
    ROW(BVMaintenanceConnector, SaveRFQPrintoutDefault),
    ROW(BVMaintenanceConnector, GetUserOrderPrintoutDefault),
    ROW(BVMaintenanceConnector, GetUserOrderSubmitPrintoutDefault),
    ROW(BVMaintenanceConnector, GetUserRFQPrintoutDefault),
    ROW(BVMaintenanceConnector, GetUserSAPPrintoutDefault),
    ROW(BVMaintenanceConnector, GetUserProjectPrintoutDefault),
    ROW(BVMaintenanceConnector, CheckTypeAheadFile),
    ROW(BVPrintConnector, GetPrintInfos),
    ROW(BVPrintConnector, GetPrintTemplates),
    ROW(BVPrintConnector, GetQuotePrintoutDefaults),
    ROW(BVPrintConnector, GetOrderPrintoutDefaults),
    ROW(BVPrintConnector, GetProjectPrintoutDefaults),
    ROW(BVPrintConnector, GetRFQPrintoutDefaults),
    ROW(BVPrintConnector, GetSAPPrintoutDefaults),
    ROW(BVPrintConnector, GetQuotePrintout),
    ROW(BVPrintConnector, SaveQuotePrintout),
    ROW(BVPrintConnector, GetOrderPrintout),
    ROW(BVPrintConnector, SaveOrderPrintout),
    ROW(BVPrintConnector, getProposalComments),
    ROW(BVPrintConnector, getRFQAuxiliaryInfo),
    ROW(BVPrintConnector, getRFQFromProjAuxInfo),
    ROW(BVPrintConnector, GetRFQPrintout),
    ROW(BVPrintConnector, SaveRFQPrintout),
    ROW(BVSearchConnector, SearchForAgents),
    ROW(BVSearchConnector, SearchForApprovals),
    ROW(BVSearchConnector, SearchApprovalQueue),
    ROW(BVSearchConnector, SearchForAuthorizations),
    ROW(BVSearchConnector, SearchForBrands),
    ROW(BVSearchConnector, SearchForCatalogNumbersFromInvoice),
    ROW(BVSearchConnector, SearchForSAPOrderView),
    ROW(BVSearchConnector, SearchForCatalogNbrs),
    ROW(BVSearchConnector, SearchForCustomers),
    ROW(BVSearchConnector, SearchForCustomerAxillaryInfo),
    ROW(BVSearchConnector, SearchForDefaultAgents),
    ROW(BVSearchConnector, SearchForAllAgents),
    ROW(BVSearchConnector, SearchForAllCustomers),
    ROW(BVSearchConnector, SearchForEnumeration),
    ROW(BVSearchConnector, SearchForEnumerationGroup),
    ROW(BVSearchConnector, SearchForVendors),
    ROW(BVSearchConnector, SearchForCustomer),
    ROW(BVSearchConnector, SearchForAllCUDCodes),
    ROW(BVSearchConnector, SearchForGLCodes),
    ROW(BVSearchConnector, SearchForHeaderCommentInfo),
    ROW(BVSearchConnector, SearchForManufacturers),
    ROW(BVSearchConnector, SearchForNatlAccts),
    ROW(BVSearchConnector, SearchForOrders),
    ROW(BVSearchConnector, SearchForOrdersForEmail),
    ROW(BVSearchConnector, SearchForOrderHeaderHistory),
    ROW(BVSearchConnector, SearchForOrderLineHistory),
    ROW(BVSearchConnector, SearchForDistributionCenters),
    ROW(BVSearchConnector, SearchForPriceHistory),
    ROW(BVSearchConnector, SearchForPH),
    ROW(BVSearchConnector, searchForPHAverage),
    ROW(BVSearchConnector, SearchForProjects),
    ROW(BVSearchConnector, SearchForProjectsForEmail),
    ROW(BVSearchConnector, SearchForPromotions),
    ROW(BVSearchConnector, SearchForQuotes),
    ROW(BVSearchConnector, SearchForQuotesForEmail),
    ROW(BVSearchConnector, SearchForRMAReturnCodes),
    ROW(BVSearchConnector, SearchForRMAStatuses),
    ROW(BVSearchConnector, SearchForReturnReasons),
    ROW(BVSearchConnector, searchForRMAProcessingTerms),
    ROW(BVSearchConnector, SearchForRMA),
    ROW(BVSearchConnector, SearchForSalesPeople),
    ROW(BVSearchConnector, SearchForShippingMethods),
    ROW(BVSearchConnector, SearchForApprovalQueueShippingMethods),
    ROW(BVSearchConnector, SearchForSpecialCreditTerms),
    ROW(BVSearchConnector, SearchForUserNamesAtSalesOrg),
    ROW(BVSearchConnector, SearchForOrderTorvexView),
    ROW(BVSearchConnector, searchForZeltViewUsingGID),
    ROW(BVSearchConnector, searchForZeltViewUsingParameters),
    ROW(BVSearchConnector, SearchForTotalInventory),
    ROW(BVSearchConnector, SearchForInventory),
    ROW(BVSearchConnector, CreateProjectFromTemplate),
    ROW(BVSearchConnector, CreateOrderFromTemplate),
    ROW(BVSearchConnector, ConvertToTemplate),
    ROW(BVSearchConnector, GetCarrierTrackingURL),
    ROW(BVSearchConnector, Deactivate),
    ROW(BVConfigConnector, GetConfiguredProduct),
    ROW(BVDocumentConnector, GetDocuments),
    ROW(BVExportConnector, SetExportComplete),
    ROW(BVGenericConnector, Send),
    ROW(BVHeartBeatConnector, sendHeartBeat),
    ROW(BVHeartBeatConnector, UpdateHeartBeatTime),
    ROW(BVPostalConnector, GetCountries),
    ROW(BVSummaryConnector, GetUserSummary),
    ROW(BVSummaryConnector, GetUserSummaryByGIDs),
    ROW(BVSummaryConnector, getProjectSummary),
    ROW(BVSummaryConnector, getQuoteSummary),
    ROW(BVSummaryConnector, getProposalsForQuote),
    ROW(BVSummaryConnector, getOrdersForQuote),
    ROW(BVSummaryConnector, getQuotesForProject),
    ROW(BVSummaryConnector, getOrderSummary),
  };
  return list;
}
// clang-format on
#undef ROW

const char* const kReply =
    "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'><e:Body><response>"
    "<return>an http: answer of more than fifteen letters</return></response></e:Body>"
    "</e:Envelope>";

const char* const kFault =
    "<e:Envelope xmlns:e='http://schemas.xmlsoap.org/soap/envelope/'><e:Body><e:Fault>"
    "<faultcode>10041</faultcode><faultstring>the server's words, of some length</faultstring>"
    "</e:Fault></e:Body></e:Envelope>";

void expect_errors_alone(const char* reply, bool dal, Shortage shortage) {
  for (const Row& row : rows()) {
    std::size_t failing = 1;
    for (;; ++failing) {
      ASSERT_LT(failing, 2000U) << row.name << " takes more memory than a call can";
      const QuietWorld world(reply);
      if (dal) {
        BVConnectorObject().InitTorvexDAL(kText);
        BVConnectorObject().UseTorvexDAL();
      }
      const Ending ending = row.run(failing, shortage);
      EXPECT_FALSE(ending.foreign) << row.name << " lets it out at allocation " << failing;
      if (!ending.struck) break;
    }
  }
}

TEST(EveryOperation, IsAmongThoseOfTheseTests) {
  std::set<std::string> known;
  for (const Row& row : rows()) known.insert(row.name);
  for (const automation::ClassInfo* info : automation::classes()) {
    if (info->name == "BVConnectorObject") continue;
    for (const automation::Member& member : info->members) {
      if (member.kind != automation::MemberKind::kOperation) continue;
      EXPECT_TRUE(known.contains(std::string(info->name) + "." + std::string(member.name)))
          << info->name << "." << member.name;
    }
  }
}

TEST(EveryOperation, LetsErrorsAloneOutOnTheSoapRoute) {
  expect_errors_alone(kReply, false, Shortage::kOnce);
}

TEST(EveryOperation, LetsErrorsAloneOutOnTheSoapRouteWhenAllMemoryIsGone) {
  expect_errors_alone(kReply, false, Shortage::kOnward);
}

TEST(EveryOperation, LetsErrorsAloneOutForAFault) {
  expect_errors_alone(kFault, false, Shortage::kOnce);
}

TEST(EveryOperation, LetsErrorsAloneOutOnTheDataAccessLayerRoute) {
  expect_errors_alone(kReply, true, Shortage::kOnce);
}

}  // namespace
}  // namespace bvconn
