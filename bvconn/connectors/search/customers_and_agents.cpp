#include "bvconn/connectors/search/bv_search_connector.h"

#include "bvconn/connectors/search/search_frames.h"
#include "bvconn/core/timing.h"
#include "bvconn/platform/conversions/conversions.h"

namespace bvconn {
namespace {

using namespace search;

constexpr Operation kSearchForAgents{
    .log = silent("SearchForAgents"),
    .method = &BVMethods::SearchForAgents,
    .service = &BVServices::Search,
    .tail = Tail::kFaultString,
};
constexpr Operation kSearchForCustomers{
    .log = silent("SearchForCustomers"),
    .method = &BVMethods::SearchForCustomers,
    .service = &BVServices::Search,
    .tail = Tail::kFaultString,
};
constexpr Operation kSearchForCustomerAxillaryInfo{
    .log = silent("SearchForCustomerAxillaryInfo"),
    .method = &BVMethods::SearchForCustomerAxillaryInfo,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForDefaultAgents{
    .log = silent("SearchForDefaultAgents"),
    .method = &BVMethods::SearchForDefaultAgents,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForAllAgents{
    .log = with_brackets("SearchForAllAgents"),
    .method = &BVMethods::SearchForAllAgents,
    .service = &BVServices::Search,
};
constexpr Operation kSearchForAllCustomers{
    .log = with_brackets("SearchForAllCustomers"),
    .method = &BVMethods::SearchForAllCustomersLite,
    .service = &BVServices::Search,
};
constexpr Operation kSearchForCustomer{
    .log = with_brackets("SearchForCustomer"),
    .method = &BVMethods::SearchForCustomer,
    .service = &BVServices::Search,
};
constexpr Operation kSearchForNatlAccts{
    .log = silent("SearchForNatlAccts"),
    .method = &BVMethods::SearchForNatlAccts,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForSalesPeople{
    .log = silent("SearchForSalesPeople"),
    .method = &BVMethods::SearchForSalesPeople,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};

}  // namespace

SoapNode BVSearchConnector::SearchForAgents(std::string_view aSessionID,
                                            std::string_view aServerURL, std::string_view AgentID,
                                            std::string_view Name, std::string_view PartnerID,
                                            std::string_view State, std::string_view Country) {
  return PositionalSearchFrame(kSearchForAgents, catalogues_, aSessionID, aServerURL,
                               [&](SoapNodes& parameters) {
                                 positional(parameters, AgentID, Name, PartnerID, State, Country);
                               });
}

SoapNode BVSearchConnector::SearchForCustomers(std::string_view aSessionID,
                                               std::string_view aServerURL,
                                               const SearchForCustomersCriteria& criteria) {
  using conversions::text_to_boolean;
  const auto& c = criteria;
  return PositionalSearchFrame(
      kSearchForCustomers, catalogues_, aSessionID, aServerURL,
      [&](SoapNodes& parameters) {
        positional(parameters, c.Name, c.Keyword, c.CustType, c.AcctNbr, c.PrevAcctNbr, c.AgentID,
                   c.City, c.State, c.Country, c.ZipCode);
        positional(parameters, text_to_boolean(c.ExSearch));
        positional(parameters, text_to_boolean(c.OnlyActive));
        positional(parameters, text_to_boolean(c.OnlyBrimvale));
      },
      [&](const dal::Services& dal) {
        // One by one, so that the first text that is no boolean is the one complained of.
        const bool ex_search = text_to_boolean(c.ExSearch);
        const bool only_active = text_to_boolean(c.OnlyActive);
        const bool only_brimvale = text_to_boolean(c.OnlyBrimvale);
        return dal.SearchService().SearchForCustomers(
            c.Name, c.Keyword, c.CustType, c.AcctNbr, c.PrevAcctNbr, c.AgentID, c.City, c.State,
            c.Country, c.ZipCode, ex_search, only_active, only_brimvale);
      });
}

SoapNode BVSearchConnector::SearchForCustomerAxillaryInfo(std::string_view aSessionID,
                                                          std::string_view aServerURL,
                                                          std::string_view CustomerGID,
                                                          std::string_view AgentID) {
  return PositionalSearchFrame(
      kSearchForCustomerAxillaryInfo, catalogues_, aSessionID, aServerURL,
      [&](SoapNodes& parameters) { positional(parameters, CustomerGID, AgentID); },
      [&](const dal::Services& dal) {
        return dal.SearchService().SearchForCustomerAxillaryInfo(CustomerGID, AgentID);
      });
}

SoapNode BVSearchConnector::SearchForDefaultAgents(std::string_view aSessionID,
                                                   std::string_view aServerURL) {
  return PositionalSearchFrame(
      kSearchForDefaultAgents, catalogues_, aSessionID, aServerURL, no_parameters,
      [&](const dal::Services& dal) { return dal.SearchService().SearchForDefaultAgents(); });
}

SoapNode BVSearchConnector::SearchForAllAgents(std::string_view aSessionID,
                                               std::string_view aServerURL,
                                               const Variant& aAgentID) {
  return PositionalSearchFrame(
      kSearchForAllAgents, catalogues_, aSessionID, aServerURL,
      [&](SoapNodes& parameters) {
        // The one named node and the one test for omission of this frame.
        if (!aAgentID.missing()) parameters.Create("agentID", to_int16(aAgentID), "", "", "");
      },
      [&](const dal::Services& dal) {
        const std::string agent = aAgentID.missing() ? "0" : to_text(aAgentID);
        return dal.SearchService().SearchForAllAgents(conversions::text_to_int32(agent));
      });
}

SoapNode BVSearchConnector::SearchForAllCustomers(std::string_view aSessionID,
                                                  std::string_view aServerURL,
                                                  std::string_view aAgentID) {
  return ConnectorMethodFrame(kSearchForAllCustomers, [&](Call& call) {
    const WholeSecondTimer timer;
    SoapNode result = named_search(
        call, aSessionID, aServerURL,
        [&](SoapNodes& parameters) { parameters.Create("Agent", aAgentID, "", "", ""); },
        [&](const dal::Services& dal) {
          return dal.SearchService().SearchForAllCustomers(conversions::text_to_int32(aAgentID));
        });
    timer.log_total("BVSearchConnector", "SearchForAllCustomers()");
    return result;
  });
}

SoapNode BVSearchConnector::SearchForCustomer(std::string_view aSessionID,
                                              std::string_view aServerURL, std::string_view aGID) {
  return ConnectorMethodFrame(kSearchForCustomer, [&](Call& call) {
    const WholeSecondTimer timer;
    SoapNode result = named_search(
        call, aSessionID, aServerURL,
        [&](SoapNodes& parameters) { parameters.Create("Customer", aGID, "", "", ""); },
        [&](const dal::Services& dal) { return dal.SearchService().SearchForCustomer(aGID); });
    timer.log_total("BVSearchConnector", "SearchForCustomer()");
    return result;
  });
}

SoapNode BVSearchConnector::SearchForNatlAccts(std::string_view aSessionID,
                                               std::string_view aServerURL,
                                               const SearchForNatlAcctsCriteria& criteria) {
  return PositionalSearchFrame(
      kSearchForNatlAccts, catalogues_, aSessionID, aServerURL,
      [&](SoapNodes& parameters) {
        positional(parameters, criteria.AcctName, criteria.AcctCode, criteria.AcctTypeCode,
                   criteria.SpecTypeCode, criteria.aShowNA, criteria.aShowNS, criteria.aShowCF);
      },
      [&](const dal::Services& dal) {
        return dal.SearchService().SearchForNatlAccts(
            criteria.AcctName, criteria.AcctCode, criteria.AcctTypeCode, criteria.SpecTypeCode,
            criteria.aShowNA, criteria.aShowNS, criteria.aShowCF);
      });
}

SoapNode BVSearchConnector::SearchForSalesPeople(std::string_view aSessionID,
                                                 std::string_view aAgentGID,
                                                 std::string_view aServerURL) {
  return PositionalSearchFrame(
      kSearchForSalesPeople, catalogues_, aSessionID, aServerURL,
      [&](SoapNodes& parameters) { positional(parameters, aAgentGID); },
      [&](const dal::Services& dal) {
        return dal.SearchService().SearchForSalesPeople(aAgentGID);
      });
}

}  // namespace bvconn
