#pragma once

#include <array>
#include <string_view>

/// What the application and the server agree on about `BVMethods` besides the rule of the small
/// first letter. The rows themselves, in slot order, are in tests/automation/interface_table.txt.
namespace bvconn::test {

struct WireName {
  std::string_view property;
  std::string_view wire_name;
};

/// The properties, in slot order, whose wire name is not their own name with a small first letter.
inline constexpr std::array kOddWireNames{
    WireName{"AddCommissionableAgent", "addCommAgent"},
    WireName{"CheckTypeAheadFile", "checkTypeAheadFileIfItDoesNotExistThenKickOffPrimeTypeAhead"},
    WireName{"CreateProjectFromTemplate", "copyProjectFromTemplate"},
    WireName{"DeleteCommissionableAgent", "deleteCommAgent"},
    WireName{"DeleteLine", "deleteLineItem"},
    WireName{"GetAcknowledgmentOverview", "getAllAcknowledgementOverview"},
    WireName{"GetAllBrimvaleDistributors", "searchForBrimvaleDistributors"},
    WireName{"GetAllRMAProcessingTerms", "getRMAProcessingTerms"},
    WireName{"GetAllRMAReturnReasons", "getRMAReturnCodes"},
    WireName{"GetCatalogNumbersFromInvoice", "getInvoiceInformation"},
    WireName{"GetCommissionStatement", "getCommissionData"},
    WireName{"GetSAPCommissionStatement", "getSAPCommissionData"},
    WireName{"GetExistingRMA", "getRMA"},
    WireName{"GetTorvexView", "getOrderTorvexView"},
    WireName{"GetLineComments", "getLineItemComments"},
    WireName{"GetNewRMA", "newRMA"},
    WireName{"GetOrderPrintout", "getOrderPrint"},
    WireName{"GetQuotePrintout", "getQuotePrint"},
    WireName{"GetRFQPrintout", "getRFQPrint"},
    WireName{"NewAcknowledgment", "newAcknowledgement"},
    WireName{"Order", "getOrder"},
    WireName{"PilferSalesInstr", "pilferSalesInstrument"},
    WireName{"Project", "getProject"},
    WireName{"ProjectToQuote", "convertToQuote"},
    WireName{"Quote", "getQuote"},
    WireName{"RevertSalesInstrument", "revert"},
    WireName{"SaveOrder", "save"},
    WireName{"SaveOrderPrintout", "saveOrderPrint"},
    WireName{"SaveProject", "save"},
    WireName{"SaveQuote", "save"},
    WireName{"SaveQuotePrintout", "saveQuotePrint"},
    WireName{"SaveRFQPrintout", "saveRFQPrint"},
    WireName{"SearchForDistributionCenters", "searchForAllDistCenters"},
    WireName{"SearchForReturnReasons", "searchForOrderReasons"},
    WireName{"SearchForOrdersForExport", "exportOrders"},
    WireName{"SearchForProjectsForExport", "exportProjects"},
    WireName{"SearchForQuotesForExport", "exportQuotes"},
    WireName{"SearchForRMA", "searchRMA"},
    WireName{"Submit", "submitOrder"},
    WireName{"UnlockSalesInstr", "unlockSalesInstrument"},
    WireName{"GetConfigXML", "GetConfigXML"},
    WireName{"GetTorvexXML", "GetConfigXML"},
};
static_assert(kOddWireNames.size() == 42);

/// The rows that no connector reads. The application does, for `BVGenericConnector.Send`.
inline constexpr std::array<std::string_view, 41> kRowsForTheApplication{
    "ForceSubmit",
    "AddCommissionableAgent",
    "Cancel",
    "CancelChange",
    "CancelForChangeOrder",
    "ChangeOrder",
    "ConvertToHFR",
    "ConvertToMultipleOrder",
    "ConvertToOrder",
    "ConvertToQuote",
    "CopyOrder",
    "CopyQuote",
    "DeleteCommissionableAgent",
    "DeleteLine",
    "GenerateRFQ",
    "GetAcknowledgments",
    "GetAllBrimvaleDistributors",
    "AllowWalkPrice",
    "GetOrdersForProject",
    "GetPriceAndAvailabilityInfo",
    "getSAPOrderViewWithNoPrices",
    "Login",
    "MultipleQuote",
    "NewOrder",
    "NewRevision",
    "Order",
    "ProjectToQuote",
    "RequestChange",
    "Save",
    "SaveOrder",
    "SaveQuote",
    "SearchForAllCustomers",
    "Submit",
    "UnlockSalesInstr",
    "UnlockSubmittal",
    "UpdateOrderHeaderComments",
    "ValidateOrder",
    "ValidateProject",
    "ValidateQuote",
    "GetTorvexXML",
    "HasValidConfigurations",
};

}  // namespace bvconn::test
