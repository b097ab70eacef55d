#include "bvconn/connectors/print/bv_print_connector.h"

#include "bvconn/operation/method_frame.h"

namespace bvconn {
namespace {

constexpr std::string_view kClass = "BVPrintConnector";

constexpr Operation kGetPrintInfos{
    .log = {.cls = kClass, .method = "GetPrintInfos"},
    .method = &BVMethods::GetPrintInfos,
    .service = &BVServices::Printing,
};
constexpr Operation kGetPrintTemplates{
    .log = {.cls = kClass, .method = "GetPrintTemplates"},
    .method = &BVMethods::GetPrintTemplates,
    .service = &BVServices::Printing,
};
constexpr Operation kGetQuotePrintoutDefaults{
    .log = {.cls = kClass, .method = "GetQuotePrintoutDefaults"},
    .method = &BVMethods::GetQuotePrintoutDefaults,
    .service = &BVServices::Printing,
};
constexpr Operation kGetOrderPrintoutDefaults{
    // deliberate [order-defaults-log-name]: errors are logged under the operation for quotes.
    .log = {.cls = kClass,
            .method = "GetOrderPrintoutDefaults",
            .error = "GetQuotePrintoutDefaults"},
    .method = &BVMethods::GetOrderPrintoutDefaults,
    .service = &BVServices::Printing,
};
constexpr Operation kGetProjectPrintoutDefaults{
    .log = {.cls = kClass, .method = "GetProjectPrintoutDefaults"},
    .method = &BVMethods::GetProjectPrintoutDefaults,
    .service = &BVServices::Printing,
};
constexpr Operation kGetRFQPrintoutDefaults{
    .log = {.cls = kClass, .method = "GetRFQPrintoutDefaults"},
    .method = &BVMethods::GetRFQPrintoutDefaults,
    .service = &BVServices::Printing,
};
constexpr Operation kGetSAPPrintoutDefaults{
    .log = {.cls = kClass, .method = "GetSAPPrintoutDefaults"},
    .method = &BVMethods::GetSAPPrintoutDefaults,
    .service = &BVServices::Printing,
};
constexpr Operation kGetQuotePrintout{
    .log = {.cls = kClass, .method = "GetQuotePrintout"},
    .method = &BVMethods::GetQuotePrintout,
    .service = &BVServices::Printing,
};
constexpr Operation kSaveQuotePrintout{
    .log = {.cls = kClass, .method = "SaveQuotePrintout"},
    .method = &BVMethods::SaveQuotePrintout,
    .service = &BVServices::Printing,
};
constexpr Operation kGetOrderPrintout{
    .log = {.cls = kClass, .method = "GetOrderPrintout"},
    .method = &BVMethods::GetOrderPrintout,
    .service = &BVServices::Printing,
};
constexpr Operation kSaveOrderPrintout{
    .log = {.cls = kClass, .method = "SaveOrderPrintout"},
    .method = &BVMethods::SaveOrderPrintout,
    .service = &BVServices::Printing,
};
constexpr Operation kGetProposalComments{
    .log = {.cls = kClass, .method = "getProposalComments", .form = LogForm::kNone},
    .method = &BVMethods::SearchForProposalComments,
    .service = &BVServices::Search,
    .tail = Tail::kBare,
};
// deliberate [rfq-info-action]: the next two belong to the quote and the project service, but go
// out under the SOAPAction of the search service.
constexpr Operation kGetRFQAuxiliaryInfo{
    .log = {.cls = kClass, .method = "getRFQAuxiliaryInfo"},
    .method = &BVMethods::getRFQAuxiliaryInfo,
    .service = &BVServices::Quote,
    .soap_action = &BVServices::Search,
};
// deliberate [rfq-info-action]: as above.
constexpr Operation kGetRFQFromProjAuxInfo{
    .log = {.cls = kClass, .method = "getRFQFromProjAuxInfo"},
    .method = &BVMethods::getRFQFromProjAuxInfo,
    .service = &BVServices::Project,
    .soap_action = &BVServices::Search,
};
constexpr Operation kGetRFQPrintout{
    .log = {.cls = kClass, .method = "GetRFQPrintout"},
    .method = &BVMethods::GetRFQPrintout,
    .service = &BVServices::Printing,
};
constexpr Operation kSaveRFQPrintout{
    .log = {.cls = kClass, .method = "SaveRFQPrintout"},
    .method = &BVMethods::SaveRFQPrintout,
    .service = &BVServices::Printing,
};

}  // namespace

SoapNode BVPrintConnector::GetPrintInfos(std::string_view aServerURL, std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetPrintInfos, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) return call.first_of(call.dal().PrintingService().GetPrintInfos());
    return call.request(kSoapEncoding).send().first();
  });
}

SoapNode BVPrintConnector::GetPrintTemplates(std::string_view aServerURL,
                                             std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetPrintTemplates, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) return call.first_of(call.dal().PrintingService().GetPrintTemplates());
    return call.request(kSoapEncoding).send().first();
  });
}

SoapNode BVPrintConnector::GetQuotePrintoutDefaults(std::string_view aServerURL,
                                                    std::string_view aSessionID,
                                                    bool getUserDefaults) {
  return ConnectorMethodFrame(kGetQuotePrintoutDefaults, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(call.dal().PrintingService().GetQuotePrintoutDefaults(getUserDefaults));
    return call.request(kSoapEncoding).add("GetUserDefaults", getUserDefaults).send().first();
  });
}

SoapNode BVPrintConnector::GetOrderPrintoutDefaults(std::string_view aServerURL,
                                                    std::string_view aSessionID,
                                                    bool getUserDefaults) {
  return ConnectorMethodFrame(kGetOrderPrintoutDefaults, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(call.dal().PrintingService().GetOrderPrintoutDefaults(getUserDefaults));
    return call.request(kSoapEncoding).add("GetUserDefaults", getUserDefaults).send().first();
  });
}

SoapNode BVPrintConnector::GetProjectPrintoutDefaults(std::string_view aServerURL,
                                                      std::string_view aSessionID,
                                                      bool getUserDefaults) {
  return ConnectorMethodFrame(
      kGetProjectPrintoutDefaults, {aServerURL, aSessionID}, [&](Call& call) {
        if (call.takes_dal()) {
          return call.first_of(
              call.dal().PrintingService().GetProjectPrintoutDefaults(getUserDefaults));
        }
        return call.request(kSoapEncoding).add("GetUserDefaults", getUserDefaults).send().first();
      });
}

SoapNode BVPrintConnector::GetRFQPrintoutDefaults(std::string_view aServerURL,
                                                  std::string_view aSessionID,
                                                  bool getUserDefaults) {
  return ConnectorMethodFrame(kGetRFQPrintoutDefaults, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(call.dal().PrintingService().GetRFQPrintoutDefaults(getUserDefaults));
    return call.request(kSoapEncoding).add("GetUserDefaults", getUserDefaults).send().first();
  });
}

SoapNode BVPrintConnector::GetSAPPrintoutDefaults(std::string_view aServerURL,
                                                  std::string_view aSessionID,
                                                  bool getUserDefaults) {
  return ConnectorMethodFrame(kGetSAPPrintoutDefaults, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal())
      return call.first_of(call.dal().PrintingService().GetSAPPrintoutDefaults(getUserDefaults));
    return call.request(kSoapEncoding).add("GetUserDefaults", getUserDefaults).send().first();
  });
}

SoapNode BVPrintConnector::GetQuotePrintout(std::string_view aServerURL,
                                            std::string_view aSessionID, std::string_view aUID) {
  return ConnectorMethodFrame(kGetQuotePrintout, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) return call.first_of(call.dal().PrintingService().GetQuotePrintout(aUID));
    return call.request(kSoapEncoding).add("UID", aUID).send().first();
  });
}

SoapNode BVPrintConnector::SaveQuotePrintout(std::string_view aServerURL,
                                             std::string_view aSessionID,
                                             const SoapNode& aQuotePrintoutNode) {
  return ConnectorMethodFrame(kSaveQuotePrintout, {aServerURL, aSessionID}, [&](Call& call) {
    return call.request(kSoapEncoding).append(aQuotePrintoutNode).send().first();
  });
}

SoapNode BVPrintConnector::GetOrderPrintout(std::string_view aServerURL,
                                            std::string_view aSessionID, std::string_view aUID) {
  return ConnectorMethodFrame(kGetOrderPrintout, {aServerURL, aSessionID}, [&](Call& call) {
    // deliberate [soap-alone]: of all printouts the quote's alone has another route.
    return call.request(kSoapEncoding).add("UID", aUID).send().first();
  });
}

SoapNode BVPrintConnector::SaveOrderPrintout(std::string_view aServerURL,
                                             std::string_view aSessionID,
                                             const SoapNode& aOrderPrintoutNode) {
  return ConnectorMethodFrame(kSaveOrderPrintout, {aServerURL, aSessionID}, [&](Call& call) {
    return call.request(kSoapEncoding).append(aOrderPrintoutNode).send().first();
  });
}

SoapNode BVPrintConnector::getProposalComments(std::string_view aAgentID,
                                               std::string_view aServerURL,
                                               std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetProposalComments, {aServerURL, aSessionID}, [&](Call& call) {
    // deliberate [comments-agent]: the agent is for SOAP alone.
    if (call.takes_dal()) return call.first_of(call.dal().SearchService().getProposalComments());
    return call.request().params(aAgentID).send().first();
  });
}

SoapNode BVPrintConnector::getRFQAuxiliaryInfo(std::string_view aQuoteGID,
                                               std::string_view aManufacturerGID,
                                               std::string_view aServerURL,
                                               std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetRFQAuxiliaryInfo, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) {
      return call.first_of(
          call.dal().QuoteService().getRFQAuxiliaryInfo(aQuoteGID, aManufacturerGID));
    }
    return call.request().params(aQuoteGID, aManufacturerGID).send().first();
  });
}

SoapNode BVPrintConnector::getRFQFromProjAuxInfo(std::string_view aProjectGID,
                                                 std::string_view aManufacturerGID,
                                                 std::string_view aServerURL,
                                                 std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetRFQFromProjAuxInfo, {aServerURL, aSessionID}, [&](Call& call) {
    if (call.takes_dal()) {
      return call.first_of(
          call.dal().ProjectService().getRFQFromProjAuxInfo(aProjectGID, aManufacturerGID));
    }
    return call.request().params(aProjectGID, aManufacturerGID).send().first();
  });
}

SoapNode BVPrintConnector::GetRFQPrintout(std::string_view aServerURL, std::string_view aSessionID,
                                          std::string_view aUID) {
  return ConnectorMethodFrame(kGetRFQPrintout, {aServerURL, aSessionID}, [&](Call& call) {
    return call.request(kSoapEncoding).add("UID", aUID).send().first();
  });
}

SoapNode BVPrintConnector::SaveRFQPrintout(std::string_view aServerURL, std::string_view aSessionID,
                                           const SoapNode& aRFQPrintoutNode) {
  return ConnectorMethodFrame(kSaveRFQPrintout, {aServerURL, aSessionID}, [&](Call& call) {
    return call.request(kSoapEncoding).append(aRFQPrintoutNode).send().first();
  });
}

}  // namespace bvconn
