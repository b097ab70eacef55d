#pragma once

#include <string_view>

namespace bvconn {

/// Arguments of `BVSearchConnector::SearchForCatalogNbrs`, in the order of its interface. What is
/// left out is sent all the same, as "".
struct SearchForCatalogNbrsCriteria {
  std::string_view BrandGID = {};
  std::string_view ProdType = {};
  std::string_view CatNbr = {};
  std::string_view Desc = {};
  std::string_view AgentID = {};
  std::string_view Country = {};
  std::string_view MfgGID = {};
  std::string_view MaterialID = {};
  std::string_view UPCNumber = {};
  std::string_view Classification = {};
};

}  // namespace bvconn
