#pragma once

#include <string_view>

#include "bvconn/platform/soap/variant.h"

namespace bvconn {

/// Arguments of `BVSearchConnector::SearchForOrders`, in the order of its interface. What is left
/// out is passed all the same: a text as "", a flag as false, `ContractorFirstPO` as "".
/// Dates are texts in the application's own form, passed on as they stand.
struct SearchForOrdersCriteria {
  std::string_view OrderNbr = {};
  std::string_view SAPOrderNumber = {};
  std::string_view OrderStatus = {};
  std::string_view ProjName = {};
  std::string_view PONbr = {};
  std::string_view QuoteNbr = {};
  std::string_view AgentID = {};
  std::string_view CatalogNbr = {};
  std::string_view CustGID = {};
  std::string_view CustName = {};
  std::string_view CustCity = {};
  std::string_view CustState = {};
  std::string_view NationalAccount = {};
  std::string_view CFAccount = {};
  std::string_view MfgGID = {};
  std::string_view CreateDateStart = {};
  std::string_view CreateDateEnd = {};
  bool GetAllRevisions = false;
  bool OnlyHFR = false;
  std::string_view OrderSource = {};
  std::string_view CustCountry = {};
  std::string_view DodgeNumber = {};
  Variant ContractorFirstPO = Variant::Missing{};
};

/// Arguments of `BVSearchConnector::SearchForOrdersForEmail`, in the order of its interface. What
/// is left out is passed all the same: a text as "", a flag as false, `ContractorFirstPO` as
/// missing. Dates as in `SearchForOrdersCriteria`.
struct SearchForOrdersForEmailCriteria {
  std::string_view OrderNbr = {};
  std::string_view SAPOrderNumber = {};
  std::string_view OrderStatus = {};
  std::string_view ProjName = {};
  std::string_view PONbr = {};
  std::string_view QuoteNbr = {};
  std::string_view AgentID = {};
  std::string_view CatalogNbr = {};
  std::string_view CustGID = {};
  std::string_view CustName = {};
  std::string_view CustCity = {};
  std::string_view CustState = {};
  std::string_view NationalAccount = {};
  std::string_view CFAccount = {};
  std::string_view MfgGID = {};
  std::string_view CreateDateStart = {};
  std::string_view CreateDateEnd = {};
  bool GetAllRevisions = false;
  bool OnlyHFR = false;
  std::string_view OrderSource = {};
  std::string_view CustCountry = {};
  std::string_view DodgeNumber = {};
  Variant ContractorFirstPO = Variant::Missing{};
  std::string_view userGID = {};
  std::string_view UserName = {};
};

/// Arguments of `BVSearchConnector::SearchForProjects`, in the order of its interface. What is
/// left out is passed all the same, as "". Dates as in `SearchForOrdersCriteria`.
struct SearchForProjectsCriteria {
  std::string_view ProjNbr = {};
  std::string_view ProjName = {};
  std::string_view ProjCity = {};
  std::string_view ProjState = {};
  std::string_view ProjStatus = {};
  std::string_view AgentID = {};
  std::string_view CatNbr = {};
  std::string_view CustomerGID = {};
  std::string_view CustomerName = {};
  std::string_view BidStart = {};
  std::string_view BidEnd = {};
  std::string_view QuoteNbr = {};
  std::string_view AppNbr = {};
  std::string_view SpecStatus = {};
  std::string_view SpecNbr = {};
  std::string_view NatlAcct = {};
  std::string_view ProjCountry = {};
  std::string_view DodgeNumber = {};
  std::string_view nsCustomerGID = {};
  std::string_view nsCustomerName = {};
  std::string_view SpecType = {};
};

/// Arguments of `BVSearchConnector::SearchForProjectsForEmail`, in the order of its interface. What
/// is left out is passed all the same, as "". Dates as in `SearchForOrdersCriteria`.
struct SearchForProjectsForEmailCriteria {
  std::string_view ProjNbr = {};
  std::string_view ProjName = {};
  std::string_view ProjCity = {};
  std::string_view ProjState = {};
  std::string_view ProjStatus = {};
  std::string_view AgentID = {};
  std::string_view CatNbr = {};
  std::string_view CustomerGID = {};
  std::string_view CustomerName = {};
  std::string_view BidStart = {};
  std::string_view BidEnd = {};
  std::string_view QuoteNbr = {};
  std::string_view AppNbr = {};
  std::string_view SpecStatus = {};
  std::string_view SpecNbr = {};
  std::string_view NatlAcct = {};
  std::string_view ProjCountry = {};
  std::string_view DodgeNumber = {};
  std::string_view nsCustomerGID = {};
  std::string_view nsCustomerName = {};
  std::string_view userGID = {};
  std::string_view UserName = {};
  std::string_view SpecType = {};
};

/// Arguments of `BVSearchConnector::SearchForQuotes`, in the order of its interface. What is left
/// out is passed all the same: a text as "", a flag as false. Dates as in
/// `SearchForOrdersCriteria`.
struct SearchForQuotesCriteria {
  std::string_view QuoteNbr = {};
  std::string_view QuoteStatus = {};
  std::string_view ProjName = {};
  std::string_view ProjCity = {};
  std::string_view ProjState = {};
  std::string_view AgentID = {};
  std::string_view CatNbr = {};
  std::string_view DistGID = {};
  std::string_view DistName = {};
  std::string_view ContGID = {};
  std::string_view ContName = {};
  std::string_view SpecGID = {};
  std::string_view SpecName = {};
  std::string_view BidStart = {};
  std::string_view BidEnd = {};
  std::string_view NationalAccount = {};
  bool GetAllRevisions = false;
  std::string_view ProjCountry = {};
  std::string_view DodgeNumber = {};
};

/// Arguments of `BVSearchConnector::SearchForQuotesForEmail`, in the order of its interface. What
/// is left out is passed all the same: a text as "", a flag as false. Dates as in
/// `SearchForOrdersCriteria`.
struct SearchForQuotesForEmailCriteria {
  std::string_view QuoteNbr = {};
  std::string_view QuoteStatus = {};
  std::string_view ProjName = {};
  std::string_view ProjCity = {};
  std::string_view ProjState = {};
  std::string_view AgentID = {};
  std::string_view CatNbr = {};
  std::string_view DistGID = {};
  std::string_view DistName = {};
  std::string_view ContGID = {};
  std::string_view ContName = {};
  std::string_view SpecGID = {};
  std::string_view SpecName = {};
  std::string_view BidStart = {};
  std::string_view BidEnd = {};
  std::string_view NationalAccount = {};
  bool GetAllRevisions = false;
  std::string_view ProjCountry = {};
  std::string_view DodgeNumber = {};
  std::string_view userGID = {};
  std::string_view UserName = {};
};

}  // namespace bvconn
