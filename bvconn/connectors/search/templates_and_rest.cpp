#include "bvconn/connectors/search/bv_search_connector.h"

#include "bvconn/connectors/search/search_frames.h"
#include "bvconn/platform/conversions/conversions.h"

namespace bvconn {
namespace {

using namespace search;

// All its lines stand under another operation's name.
constexpr Operation kSearchForEnumeration{
    .log = {.cls = kClass, .method = "SearchForAllCUDCodes"},
    .method = &BVMethods::SearchForEnumeration,
    .service = &BVServices::Search,
};
constexpr Operation kSearchForEnumerationGroup{
    .log = with_brackets("SearchForEnumerationGroup"),
    .method = &BVMethods::SearchForEnumerationGroup,
    .service = &BVServices::Search,
};
constexpr Operation kSearchForGLCodes{
    .log = silent("SearchForGLCodes"),
    .method = &BVMethods::SearchForGLCodes,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
constexpr Operation kSearchForRMAReturnCodes{
    .log = with_brackets("SearchForRMAReturnCodes"),
    .method = &BVMethods::GetAllRMAReturnReasons,
    .service = &BVServices::RMA,
};
constexpr Operation kSearchForRMAStatuses{
    .log = with_brackets("SearchForRMAStatuses"),
    .method = &BVMethods::SearchForRMAStatuses,
    .service = &BVServices::Search,
};
constexpr Operation kSearchForReturnReasons{
    .log = with_brackets("SearchForReturnReasons"),
    .method = &BVMethods::SearchForReturnReasons,
    .service = &BVServices::Search,
};
constexpr Operation kSearchForRMAProcessingTerms{
    .log = with_brackets("searchForRMAProcessingTerms"),
    .method = &BVMethods::GetAllRMAProcessingTerms,
    .service = &BVServices::RMA,
};
constexpr Operation kSearchForRMA{
    .log = with_brackets("SearchForRMA"),
    .method = &BVMethods::SearchForRMA,
    .service = &BVServices::RMA,
};
constexpr Operation kCreateProjectFromTemplate{
    .log = silent("CreateProjectFromTemplate"),
    .method = &BVMethods::CreateProjectFromTemplate,
    .service = &BVServices::Project,
    .tail = Tail::kBare,
};
constexpr Operation kCreateOrderFromTemplate{
    .log = silent("CreateOrderFromTemplate"),
    .method = &BVMethods::CreateOrderFromTemplate,
    .service = &BVServices::Order,
    .tail = Tail::kBare,
};
constexpr Operation kConvertToTemplate{
    .log = silent("ConvertToTemplate"),
    .method = &BVMethods::ConvertToTemplate,
    .service = &BVServices::Project,
    .tail = Tail::kBare,
};
constexpr Operation kGetCarrierTrackingURL{
    .log = silent("GetCarrierTrackingURL"),
    .method = &BVMethods::GetCarrierTrackingURL,
    .service = &BVServices::ZeltViewService,
    .tail = Tail::kBare,
};
constexpr Operation kDeactivate{
    .log = silent("Deactivate"),
    .method = &BVMethods::Deactivate,
    .service = &BVServices::SalesInstrumentService,
    .tail = Tail::kBare,
};

// The one document type whose reasons are asked for; the caller can't change it.
constexpr std::string_view kOrderReturns = "ZRE";

}  // namespace

SoapNode BVSearchConnector::SearchForEnumeration(std::string_view aSessionID,
                                                 std::string_view aServerURL,
                                                 std::string_view aEnumGroup) {
  return NamedSearchFrame(
      kSearchForEnumeration, aSessionID, aServerURL,
      [&](SoapNodes& parameters) { parameters.Create("group", aEnumGroup, "", "", ""); });
}

SoapNode BVSearchConnector::SearchForEnumerationGroup(std::string_view aSessionID,
                                                      std::string_view aServerURL,
                                                      std::string_view aGroupCode) {
  return NamedSearchFrame(
      kSearchForEnumerationGroup, aSessionID, aServerURL,
      [&](SoapNodes& parameters) { parameters.Create("groupCode", aGroupCode, "", "", ""); },
      [&](const dal::Services& dal) {
        return dal.SearchService().SearchForEnumerationGroup(aGroupCode);
      });
}

SoapNode BVSearchConnector::SearchForGLCodes(std::string_view aSessionID,
                                             std::string_view aServerURL, std::string_view Code,
                                             std::string_view Desc, std::string_view Misc) {
  using conversions::text_to_boolean;
  return PositionalSearchFrame(
      kSearchForGLCodes, catalogues_, aSessionID, aServerURL,
      [&](SoapNodes& parameters) { positional(parameters, Code, Desc, text_to_boolean(Misc)); },
      [&](const dal::Services& dal) {
        return dal.SearchService().SearchForGLCodes(Code, Desc, text_to_boolean(Misc));
      });
}

SoapNode BVSearchConnector::SearchForRMAReturnCodes(std::string_view aSessionID,
                                                    std::string_view aServerURL) {
  return NamedSearchFrame(kSearchForRMAReturnCodes, aSessionID, aServerURL, no_parameters);
}

SoapNode BVSearchConnector::SearchForRMAStatuses(std::string_view aSessionID,
                                                 std::string_view aServerURL) {
  return NamedSearchFrame(
      kSearchForRMAStatuses, aSessionID, aServerURL, no_parameters,
      [&](const dal::Services& dal) { return dal.SearchService().SearchForRMAStatuses(); });
}

SoapNode BVSearchConnector::SearchForReturnReasons(std::string_view aSessionID,
                                                   std::string_view aServerURL) {
  return NamedSearchFrame(
      kSearchForReturnReasons, aSessionID, aServerURL,
      [&](SoapNodes& parameters) {
        parameters.Create("DocumentTypeCode", kOrderReturns, "", "", "");
      },
      [&](const dal::Services& dal) {
        return dal.SearchService().SearchForReturnReasons(kOrderReturns);
      });
}

SoapNode BVSearchConnector::searchForRMAProcessingTerms(std::string_view aSessionID,
                                                        std::string_view aServerURL) {
  return NamedSearchFrame(
      kSearchForRMAProcessingTerms, aSessionID, aServerURL, no_parameters,
      [&](const dal::Services& dal) { return dal.RMAService().searchForRMAProcessingTerms(); });
}

SoapNode BVSearchConnector::SearchForRMA(std::string_view aSessionID, std::string_view aServerURL,
                                         std::string_view aCustomerRefNumber,
                                         std::string_view aTORVEXRMANumber,
                                         std::string_view aDistributorGID,
                                         std::string_view aSubmitSaveDate) {
  return ConnectorMethodFrame(kSearchForRMA, [&](Call& call) {
    auto& parameters = call.envelope(aSessionID, kSoapEncoding);
    parameters.Create("CustomerRefNumber", aCustomerRefNumber, "", "", "");
    parameters.Create("TorvexRMANumber", aTORVEXRMANumber, "", "", "");
    parameters.Create("DistributorGID", aDistributorGID, "", "", "");
    parameters.Create("DateSubmitted", aSubmitSaveDate, "", "", "");
    if (call.takes_dal()) {
      return call.parse(call.dal().RMAService().SearchForRMA(call.request_text())).first();
    }
    return call.send(aServerURL).first();
  });
}

SoapNode BVSearchConnector::CreateProjectFromTemplate(std::string_view aSessionID,
                                                      std::string_view aServerURL,
                                                      std::string_view aGID) {
  return PositionalSearchFrame(
      kCreateProjectFromTemplate, catalogues_, aSessionID, aServerURL,
      [&](SoapNodes& parameters) { positional(parameters, aGID); },
      [&](const dal::Services& dal) {
        return dal.ProjectService().CreateProjectFromTemplate(aGID);
      });
}

SoapNode BVSearchConnector::CreateOrderFromTemplate(std::string_view aSessionID,
                                                    std::string_view aServerURL,
                                                    std::string_view aProjectGID,
                                                    std::string_view aProjectName,
                                                    std::string_view aProjectCity,
                                                    std::string_view aProjectStateCode) {
  return PositionalSearchFrame(
      kCreateOrderFromTemplate, catalogues_, aSessionID, aServerURL, [&](SoapNodes& parameters) {
        positional(parameters, aProjectGID, aProjectName, aProjectCity, aProjectStateCode);
      });
}

SoapNode BVSearchConnector::ConvertToTemplate(std::string_view aSessionID,
                                              std::string_view aServerURL, std::string_view aGID) {
  return PositionalSearchFrame(
      kConvertToTemplate, catalogues_, aSessionID, aServerURL,
      [&](SoapNodes& parameters) { positional(parameters, aGID); },
      [&](const dal::Services& dal) { return dal.ProjectService().ConvertToTemplate(aGID); });
}

std::string BVSearchConnector::GetCarrierTrackingURL(std::string_view aSessionID,
                                                     std::string_view aServerURL,
                                                     std::string_view aCarrierCode,
                                                     std::string_view aTrackingNumber) {
  return ConnectorMethodFrame(kGetCarrierTrackingURL, catalogues_, [&](Call& call) {
    positional(call.envelope(aSessionID), aCarrierCode, aTrackingNumber);
    return call.send(aServerURL).text();
  });
}

SoapNode BVSearchConnector::Deactivate(std::string_view aSessionID, std::string_view aServerURL,
                                       std::string_view aGID) {
  return PositionalSearchFrame(
      kDeactivate, catalogues_, aSessionID, aServerURL,
      [&](SoapNodes& parameters) { positional(parameters, aGID); },
      [&](const dal::Services& dal) { return dal.SalesInstrumentService().Deactivate(aGID); });
}

}  // namespace bvconn
