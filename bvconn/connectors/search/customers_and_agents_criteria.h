#pragma once

#include <string_view>

namespace bvconn {

/// Arguments of `BVSearchConnector::SearchForCustomers`, in the order of its interface. A text that
/// is left out is sent all the same, as "". `ExSearch`, `OnlyActive` and `OnlyBrimvale` can't be
/// left out, though: they are read as booleans, which "" is not.
struct SearchForCustomersCriteria {
  std::string_view Name = {};
  std::string_view Keyword = {};
  std::string_view CustType = {};
  std::string_view AcctNbr = {};
  std::string_view PrevAcctNbr = {};
  std::string_view AgentID = {};
  std::string_view City = {};
  std::string_view State = {};
  std::string_view ZipCode = {};
  std::string_view ExSearch = {};
  std::string_view OnlyActive = {};
  std::string_view OnlyBrimvale = {};
  std::string_view Country = {};
};

/// Arguments of `BVSearchConnector::SearchForNatlAccts`, in the order of its interface. What is
/// left out is sent all the same: a text as "", a flag as false.
struct SearchForNatlAcctsCriteria {
  std::string_view AcctName = {};
  std::string_view AcctCode = {};
  std::string_view AcctTypeCode = {};
  std::string_view SpecTypeCode = {};
  bool aShowNA = false;
  bool aShowNS = false;
  bool aShowCF = false;
};

}  // namespace bvconn
