#include "bvconn/connectors/search/bv_search_connector.h"

#include "bvconn/connectors/search/search_blocks.h"
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
// deliberate [customers-lite]: the row of another name; its own is the application's.
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
  return ConnectorMethodFrame(kSearchForAgents, {aServerURL, aSessionID}, [&](Call& call) {
    call.request().params(AgentID, Name, PartnerID, State, Country);
    return call.send().first();
  });
}

SoapNode BVSearchConnector::SearchForCustomers(std::string_view aSessionID,
                                               std::string_view aServerURL,
                                               const SearchForCustomersCriteria& criteria) {
  using conversions::text_to_boolean;
  const auto& c = criteria;
  // deliberate [text-booleans]: booleans that are passed as text; left out, they are none.
  // deliberate [customers-order]: country before postcode, unlike the signature.
  return ConnectorMethodFrame(kSearchForCustomers, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) {
      // One by one, so that the first text that is no boolean is the one complained of.
      const bool ex_search = text_to_boolean(c.ExSearch);
      const bool only_active = text_to_boolean(c.OnlyActive);
      const bool only_brimvale = text_to_boolean(c.OnlyBrimvale);
      return call.first_of(call.dal().SearchService().SearchForCustomers(
          c.Name, c.Keyword, c.CustType, c.AcctNbr, c.PrevAcctNbr, c.AgentID, c.City, c.State,
          c.Country, c.ZipCode, ex_search, only_active, only_brimvale));
    }
    call.request()
        .params(c.Name, c.Keyword, c.CustType, c.AcctNbr, c.PrevAcctNbr, c.AgentID, c.City, c.State,
                c.Country, c.ZipCode)
        .params(text_to_boolean(c.ExSearch))
        .params(text_to_boolean(c.OnlyActive))
        .params(text_to_boolean(c.OnlyBrimvale));
    return call.send().first();
  });
}

SoapNode BVSearchConnector::SearchForCustomerAxillaryInfo(std::string_view aSessionID,
                                                          std::string_view aServerURL,
                                                          std::string_view CustomerGID,
                                                          std::string_view AgentID) {
  return ConnectorMethodFrame(
      kSearchForCustomerAxillaryInfo, {aServerURL, aSessionID}, [&](Call& call) {
        if (call.takes_dal()) {
          return call.first_of(
              call.dal().SearchService().SearchForCustomerAxillaryInfo(CustomerGID, AgentID));
        }
        return call.request().params(CustomerGID, AgentID).send().first();
      });
}

SoapNode BVSearchConnector::SearchForDefaultAgents(std::string_view aSessionID,
                                                   std::string_view aServerURL) {
  return ConnectorMethodFrame(kSearchForDefaultAgents, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) return call.first_of(call.dal().SearchService().SearchForDefaultAgents());
    return call.request().send().first();
  });
}

SoapNode BVSearchConnector::SearchForAllAgents(std::string_view aSessionID,
                                               std::string_view aServerURL,
                                               const Variant& aAgentID) {
  return ConnectorMethodFrame(kSearchForAllAgents, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) {
      const std::string agent = aAgentID.missing() ? "0" : to_text(aAgentID);
      return call.first_of(
          call.dal().SearchService().SearchForAllAgents(conversions::text_to_int32(agent)));
    }
    call.request();
    // deliberate [agent-node]: named, unlike the parameters of its neighbours, and left out when
    // the argument is. deliberate [agent-range]: 16 bits here, 32 on the other route.
    if (!aAgentID.missing()) call.add("agentID", to_int16(aAgentID));
    return call.send().first();
  });
}

SoapNode BVSearchConnector::SearchForAllCustomers(std::string_view aSessionID,
                                                  std::string_view aServerURL,
                                                  std::string_view aAgentID) {
  return ConnectorMethodFrame(kSearchForAllCustomers, {aServerURL, aSessionID}, [&](Call& call) {
    const WholeSecondTimer timer;
    if (call.takes_dal()) {
      // deliberate [customers-agent]: a number here, any text by SOAP.
      const std::int32_t agent = conversions::text_to_int32(aAgentID);
      call.parse(call.dal().SearchService().SearchForAllCustomers(agent)).or_raise();
    } else {
      call.request(kSoapEncoding).add("Agent", aAgentID).send().or_raise();
    }
    SoapNode result = call.first();
    timer.log_total("BVSearchConnector", "SearchForAllCustomers()");
    return result;
  });
}

SoapNode BVSearchConnector::SearchForCustomer(std::string_view aSessionID,
                                              std::string_view aServerURL, std::string_view aGID) {
  return ConnectorMethodFrame(kSearchForCustomer, {aServerURL, aSessionID}, [&](Call& call) {
    const WholeSecondTimer timer;
    if (call.takes_dal()) {
      call.parse(call.dal().SearchService().SearchForCustomer(aGID)).or_raise();
    } else {
      call.request(kSoapEncoding).add("Customer", aGID).send().or_raise();
    }
    SoapNode result = call.first();
    timer.log_total("BVSearchConnector", "SearchForCustomer()");
    return result;
  });
}

SoapNode BVSearchConnector::SearchForNatlAccts(std::string_view aSessionID,
                                               std::string_view aServerURL,
                                               const SearchForNatlAcctsCriteria& criteria) {
  return ConnectorMethodFrame(kSearchForNatlAccts, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) {
      return call.first_of(call.dal().SearchService().SearchForNatlAccts(
          criteria.AcctName, criteria.AcctCode, criteria.AcctTypeCode, criteria.SpecTypeCode,
          criteria.aShowNA, criteria.aShowNS, criteria.aShowCF));
    }
    call.request().params(criteria.AcctName, criteria.AcctCode, criteria.AcctTypeCode,
                          criteria.SpecTypeCode, criteria.aShowNA, criteria.aShowNS,
                          criteria.aShowCF);
    return call.send().first();
  });
}

SoapNode BVSearchConnector::SearchForSalesPeople(std::string_view aSessionID,
                                                 std::string_view aAgentGID,
                                                 std::string_view aServerURL) {
  return ConnectorMethodFrame(kSearchForSalesPeople, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(call.dal().SearchService().SearchForSalesPeople(aAgentGID));
    return call.request().params(aAgentGID).send().first();
  });
}

}  // namespace bvconn
