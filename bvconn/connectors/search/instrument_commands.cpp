#include "bvconn/connectors/search/bv_search_connector.h"

#include "bvconn/connectors/search/search_blocks.h"

namespace bvconn {
namespace {

using namespace search;

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
constexpr Operation kDeactivate{
    .log = silent("Deactivate"),
    .method = &BVMethods::Deactivate,
    .service = &BVServices::SalesInstrumentService,
    .tail = Tail::kBare,
};

}  // namespace

SoapNode BVSearchConnector::CreateProjectFromTemplate(std::string_view aSessionID,
                                                      std::string_view aServerURL,
                                                      std::string_view aGID) {
  return ConnectorMethodFrame(
      kCreateProjectFromTemplate, {aServerURL, aSessionID}, [&](Call& call) {
        if (call.takes_dal())
          return call.first_of(call.dal().ProjectService().CreateProjectFromTemplate(aGID));
        return call.request().params(aGID).send().first();
      });
}

SoapNode BVSearchConnector::CreateOrderFromTemplate(std::string_view aSessionID,
                                                    std::string_view aServerURL,
                                                    std::string_view aProjectGID,
                                                    std::string_view aProjectName,
                                                    std::string_view aProjectCity,
                                                    std::string_view aProjectStateCode) {
  return ConnectorMethodFrame(kCreateOrderFromTemplate, {aServerURL, aSessionID}, [&](Call& call) {
    call.request().params(aProjectGID, aProjectName, aProjectCity, aProjectStateCode);
    return call.send().first();
  });
}

SoapNode BVSearchConnector::ConvertToTemplate(std::string_view aSessionID,
                                              std::string_view aServerURL, std::string_view aGID) {
  return ConnectorMethodFrame(kConvertToTemplate, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) return call.first_of(call.dal().ProjectService().ConvertToTemplate(aGID));
    return call.request().params(aGID).send().first();
  });
}

SoapNode BVSearchConnector::Deactivate(std::string_view aSessionID, std::string_view aServerURL,
                                       std::string_view aGID) {
  return ConnectorMethodFrame(kDeactivate, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(call.dal().SalesInstrumentService().Deactivate(aGID));
    return call.request().params(aGID).send().first();
  });
}

}  // namespace bvconn
