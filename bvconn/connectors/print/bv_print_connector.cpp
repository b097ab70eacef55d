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
    // Errors are logged under the operation for quotes.
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
// The next two belong to the quote and the project service, but go out under the SOAPAction of the
// search service. The mismatch is deliberate.
constexpr Operation kGetRFQAuxiliaryInfo{
    .log = {.cls = kClass, .method = "getRFQAuxiliaryInfo"},
    .method = &BVMethods::getRFQAuxiliaryInfo,
    .service = &BVServices::Quote,
    .soap_action = &BVServices::Search,
};
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

SoapNode send_empty(Call& call, std::string_view aServerURL, std::string_view aSessionID) {
  call.envelope(aSessionID, kSoapEncoding);
  return call.send(aServerURL).first();
}

SoapNode send_whose_defaults(Call& call, std::string_view aServerURL, std::string_view aSessionID,
                             bool getUserDefaults) {
  call.envelope(aSessionID, kSoapEncoding).Create("GetUserDefaults", getUserDefaults, "", "", "");
  return call.send(aServerURL).first();
}

SoapNode send_uid(Call& call, std::string_view aServerURL, std::string_view aSessionID,
                  std::string_view aUID) {
  call.envelope(aSessionID, kSoapEncoding).Create("UID", aUID, "", "", "");
  return call.send(aServerURL).first();
}

SoapNode send_printout(Call& call, std::string_view aServerURL, std::string_view aSessionID,
                       const SoapNode& printout) {
  call.envelope(aSessionID, kSoapEncoding).Append(printout);
  return call.send(aServerURL).first();
}

SoapNode send_instrument_and_manufacturer(Call& call, std::string_view gid,
                                          std::string_view aManufacturerGID,
                                          std::string_view aServerURL,
                                          std::string_view aSessionID) {
  auto& parameters = call.envelope(aSessionID);
  parameters.Create("param", gid, "", "", "");
  parameters.Create("param", aManufacturerGID, "", "", "");
  return call.send(aServerURL).first();
}

}  // namespace

SoapNode BVPrintConnector::GetPrintInfos(std::string_view aServerURL, std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetPrintInfos, [&](Call& call) {
    if (call.takes_dal()) return call.parse(call.dal().PrintingService().GetPrintInfos()).first();
    return send_empty(call, aServerURL, aSessionID);
  });
}

SoapNode BVPrintConnector::GetPrintTemplates(std::string_view aServerURL,
                                             std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetPrintTemplates, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().PrintingService().GetPrintTemplates()).first();
    }
    return send_empty(call, aServerURL, aSessionID);
  });
}

SoapNode BVPrintConnector::GetQuotePrintoutDefaults(std::string_view aServerURL,
                                                    std::string_view aSessionID,
                                                    bool getUserDefaults) {
  return ConnectorMethodFrame(kGetQuotePrintoutDefaults, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().PrintingService().GetQuotePrintoutDefaults(getUserDefaults))
          .first();
    }
    return send_whose_defaults(call, aServerURL, aSessionID, getUserDefaults);
  });
}

SoapNode BVPrintConnector::GetOrderPrintoutDefaults(std::string_view aServerURL,
                                                    std::string_view aSessionID,
                                                    bool getUserDefaults) {
  return ConnectorMethodFrame(kGetOrderPrintoutDefaults, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().PrintingService().GetOrderPrintoutDefaults(getUserDefaults))
          .first();
    }
    return send_whose_defaults(call, aServerURL, aSessionID, getUserDefaults);
  });
}

SoapNode BVPrintConnector::GetProjectPrintoutDefaults(std::string_view aServerURL,
                                                      std::string_view aSessionID,
                                                      bool getUserDefaults) {
  return ConnectorMethodFrame(kGetProjectPrintoutDefaults, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().PrintingService().GetProjectPrintoutDefaults(getUserDefaults))
          .first();
    }
    return send_whose_defaults(call, aServerURL, aSessionID, getUserDefaults);
  });
}

SoapNode BVPrintConnector::GetRFQPrintoutDefaults(std::string_view aServerURL,
                                                  std::string_view aSessionID,
                                                  bool getUserDefaults) {
  return ConnectorMethodFrame(kGetRFQPrintoutDefaults, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().PrintingService().GetRFQPrintoutDefaults(getUserDefaults))
          .first();
    }
    return send_whose_defaults(call, aServerURL, aSessionID, getUserDefaults);
  });
}

SoapNode BVPrintConnector::GetSAPPrintoutDefaults(std::string_view aServerURL,
                                                  std::string_view aSessionID,
                                                  bool getUserDefaults) {
  return ConnectorMethodFrame(kGetSAPPrintoutDefaults, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().PrintingService().GetSAPPrintoutDefaults(getUserDefaults))
          .first();
    }
    return send_whose_defaults(call, aServerURL, aSessionID, getUserDefaults);
  });
}

SoapNode BVPrintConnector::GetQuotePrintout(std::string_view aServerURL,
                                            std::string_view aSessionID, std::string_view aUID) {
  return ConnectorMethodFrame(kGetQuotePrintout, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().PrintingService().GetQuotePrintout(aUID)).first();
    }
    return send_uid(call, aServerURL, aSessionID, aUID);
  });
}

SoapNode BVPrintConnector::SaveQuotePrintout(std::string_view aServerURL,
                                             std::string_view aSessionID,
                                             const SoapNode& aQuotePrintoutNode) {
  return ConnectorMethodFrame(kSaveQuotePrintout, [&](Call& call) {
    return send_printout(call, aServerURL, aSessionID, aQuotePrintoutNode);
  });
}

SoapNode BVPrintConnector::GetOrderPrintout(std::string_view aServerURL,
                                            std::string_view aSessionID, std::string_view aUID) {
  return ConnectorMethodFrame(
      kGetOrderPrintout, [&](Call& call) { return send_uid(call, aServerURL, aSessionID, aUID); });
}

SoapNode BVPrintConnector::SaveOrderPrintout(std::string_view aServerURL,
                                             std::string_view aSessionID,
                                             const SoapNode& aOrderPrintoutNode) {
  return ConnectorMethodFrame(kSaveOrderPrintout, [&](Call& call) {
    return send_printout(call, aServerURL, aSessionID, aOrderPrintoutNode);
  });
}

SoapNode BVPrintConnector::getProposalComments(std::string_view aAgentID,
                                               std::string_view aServerURL,
                                               std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetProposalComments, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().SearchService().getProposalComments()).first();
    }
    call.envelope(aSessionID).Create("param", aAgentID, "", "", "");
    return call.send(aServerURL).first();
  });
}

SoapNode BVPrintConnector::getRFQAuxiliaryInfo(std::string_view aQuoteGID,
                                               std::string_view aManufacturerGID,
                                               std::string_view aServerURL,
                                               std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetRFQAuxiliaryInfo, [&](Call& call) {
    if (call.takes_dal()) {
      return call.parse(call.dal().QuoteService().getRFQAuxiliaryInfo(aQuoteGID, aManufacturerGID))
          .first();
    }
    return send_instrument_and_manufacturer(call, aQuoteGID, aManufacturerGID, aServerURL,
                                            aSessionID);
  });
}

SoapNode BVPrintConnector::getRFQFromProjAuxInfo(std::string_view aProjectGID,
                                                 std::string_view aManufacturerGID,
                                                 std::string_view aServerURL,
                                                 std::string_view aSessionID) {
  return ConnectorMethodFrame(kGetRFQFromProjAuxInfo, [&](Call& call) {
    if (call.takes_dal()) {
      return call
          .parse(call.dal().ProjectService().getRFQFromProjAuxInfo(aProjectGID, aManufacturerGID))
          .first();
    }
    return send_instrument_and_manufacturer(call, aProjectGID, aManufacturerGID, aServerURL,
                                            aSessionID);
  });
}

SoapNode BVPrintConnector::GetRFQPrintout(std::string_view aServerURL, std::string_view aSessionID,
                                          std::string_view aUID) {
  return ConnectorMethodFrame(
      kGetRFQPrintout, [&](Call& call) { return send_uid(call, aServerURL, aSessionID, aUID); });
}

SoapNode BVPrintConnector::SaveRFQPrintout(std::string_view aServerURL, std::string_view aSessionID,
                                           const SoapNode& aRFQPrintoutNode) {
  return ConnectorMethodFrame(kSaveRFQPrintout, [&](Call& call) {
    return send_printout(call, aServerURL, aSessionID, aRFQPrintoutNode);
  });
}

}  // namespace bvconn
