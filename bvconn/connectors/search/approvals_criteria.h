#pragma once

#include <string_view>

#include "bvconn/platform/soap/variant.h"

namespace bvconn {

/// Arguments of `BVSearchConnector::SearchForApprovals`, in the order of its interface. What is
/// left out is sent all the same: a text as "", a flag as false.
struct SearchForApprovalsCriteria {
  std::string_view AgentID = {};
  bool Project = false;
  bool Quote = false;
  bool Order = false;
  bool NAOnly = false;
  bool NAExclude = false;
  bool CFOnly = false;
  bool CFExclude = false;
  bool OnlyProjectOrders = false;
  bool OnlyStockOrders = false;
  bool Pricing = false;
  bool Config = false;
  bool Review = false;
  bool ApprGranted = false;
  bool ApprDenied = false;
  bool Returned = false;
  bool QSSRCatChange = false;
  bool SpecSubmit = false;
  bool SpecReg = false;
  bool SpecDenied = false;
  bool ChangeReq = false;
  bool ChangeRev = false;
  bool Territory = false;
  std::string_view BrandGID = {};
  bool InternationalShipping = false;
  bool CompetitiveReview = false;
  std::string_view PromoGID = {};
};

/// Arguments of `BVSearchConnector::SearchApprovalQueue`, in the order of its interface. The arrays
/// have to be given: one that was never allocated goes out empty by SOAP and fails on the data
/// access layer route. What else is left out is sent all the same: a text as "", a flag as false.
struct SearchApprovalQueueCriteria {
  StringArray BrandCode = {};
  StringArray PromoCode = {};
  StringArray ManufacturerCode = {};
  StringArray IndustryCode = {};
  std::string_view AgentID = {};
  bool Project = false;
  bool Quote = false;
  bool Order = false;
  bool NAOnly = false;
  bool NAExclude = false;
  bool CFOnly = false;
  bool CFExclude = false;
  bool ProjectOnly = false;
  bool StockOnly = false;
  bool Pricing = false;
  bool Config = false;
  bool Review = false;
  bool Returned = false;
  bool SpecSubmit = false;
  bool SpecReg = false;
  bool SpecDenied = false;
  bool ChangeReq = false;
  bool InternationalShipping = false;
  std::string_view shippingMethod = {};
  bool HFR = false;
  bool QuickShip = false;
};

}  // namespace bvconn
