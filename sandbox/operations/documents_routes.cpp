#include <array>
#include <exception>

#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/soap/xml_document.h"
#include "sandbox/endpoints/soap_text.h"
#include "sandbox/operations/documents.h"

namespace bvconn::sandbox {
namespace {

using Method = std::function<void(SoapCall&)>;

constexpr const char* kServerFault = "SOAP-ENV:Server";
/// The one argument is the text of a whole request.
constexpr int kRequestText = -1;

struct Route {
  const char* object;
  const char* operation;
  const char* service;
  const char* method;
  int keys;  ///< how many arguments, each the parameter in its place
};

constexpr std::array kRoutes{
    Route{"ProjectService", "CopyProject", "urn:ProjectService", "copyProject", 1},
    Route{"ProjectService", "getExistingProject", "urn:ProjectService", "getProject", 1},
    Route{"ProjectService", "getRevertedProject", "urn:ProjectService", "revert", 1},
    Route{"ProjectService", "CheckSingleSaveStatus", "urn:ProjectService", "checkSaveStatus", 1},
    Route{"ProjectService", "getNewProject", "urn:ProjectService", "newProject", 0},
    Route{"ProjectService", "generateQuotes", "urn:ProjectService", "generateQuotes", kRequestText},
    Route{"ProjectService", "SaveProject", "urn:ProjectService", "save", kRequestText},
    Route{"ProjectService", "RequestReview", "urn:ProjectService", "requestReview", kRequestText},
    Route{"ProjectService", "ReturnToAgent", "urn:ProjectService", "returnToAgent", kRequestText},
    Route{"ProjectService", "GetProjectHeaderComments", "urn:ProjectService", "getHeaderComments",
          2},
    Route{"ProjectService", "UpdateProjectHeaderComments", "urn:ProjectService",
          "updateHeaderComments", kRequestText},
    Route{"QuoteService", "SetQuoteStatusToQuoted", "urn:QuoteService", "setQuoteStatusToQuoted",
          1},
    Route{"QuoteService", "updateRFQ", "urn:QuoteService", "updateRFQ", 2},
    Route{"QuoteService", "GetQuoteHeaderComments", "urn:QuoteService", "getHeaderComments", 2},
    Route{"QuoteService", "UpdateQuoteHeaderComments", "urn:QuoteService", "updateHeaderComments",
          kRequestText},
    Route{"QuoteService", "getPreviousSalesInstrumentColumnPrices", "urn:QuoteService",
          "getDefaultColumnValues", 1},
    Route{"OrderService", "getSAPOrderView", "urn:OrderService", "getSAPOrderView", 2},
    Route{"OrderService", "getSAPInfo", "urn:OrderService", "getSAPInfo", kRequestText},
    Route{"OrderService", "GetOrderHeaderComments", "urn:OrderService", "getHeaderComments", 2},
    Route{"OrderService", "UpdateOrderHeaderComments", "urn:OrderService", "updateHeaderComments",
          kRequestText},
    Route{"OrderService", "getPreviousSalesInstrumentColumnPrices", "urn:OrderService",
          "getDefaultColumnValues", 1},
    // Takes the comments of quotes and projects too: the service in the text tells.
    Route{"OrderService", "SetLineComments", "", "updateLineItemComments", kRequestText},
    Route{"SearchService", "GetProductApprovals", "urn:ProductService", "getProductApprovals",
          kRequestText},
    Route{"SalesInstrumentService", "GetLineComments", "urn:SalesInstrumentService",
          "getLineItemComments", 2},
    Route{"SalesInstrumentService", "GetProductCost", "urn:ProductService", "getProductCost",
          kRequestText},
    Route{"SubmittalService", "GetAllSubmittalsForProject", "urn:SubmittalService",
          "getAllSubmittalsForProject", 1},
    Route{"SubmittalService", "GetAllSubmittalsForQuote", "urn:SubmittalService",
          "getAllSubmittalsForQuote", 1},
    Route{"SubmittalService", "GetUpdatableSubmittalsForProject", "urn:SubmittalService",
          "getUpdatableSubmittalsForProject", 1},
    Route{"SubmittalService", "GetUpdatableSubmittalsForQuote", "urn:SubmittalService",
          "getUpdatableSubmittalsForQuote", 1},
    Route{"RMAService", "GetNewRMA", "urn:RMAService", "newRMA", 1},
    Route{"RMAService", "GetExistingRMA", "urn:RMAService", "getRMA", 1},
    Route{"RMAService", "SaveRMA", "urn:RMAService", "saveRMA", kRequestText},
    Route{"RMAService", "SubmitRMA", "urn:RMAService", "submitRMA", kRequestText},
    Route{"RMAService", "GetInvoiceInfo", "urn:RMAService", "getInvoiceInfo", 1},
};

[[noreturn]] void refuse_arguments(const Route& route, const std::string& expected) {
  throw DalError{400, dal_numbers::kBadRequest, route.object,
                 std::string(route.operation) + " takes " + expected};
}

struct Request {
  SoapEnvelope envelope;
  std::string service;
  std::string user_id;
};

Request request_of_keys(const Route& route, const nlohmann::json& arguments) {
  Request request{.envelope = SoapEnvelope::make(), .service = route.service, .user_id = {}};
  const std::string expected = std::to_string(route.keys) + " arguments, texts or booleans";
  if (arguments.size() != static_cast<std::size_t>(route.keys)) refuse_arguments(route, expected);
  for (const auto& argument : arguments) {
    if (argument.is_boolean()) {
      request.envelope.Parameters().Create("param", argument.get<bool>());
    } else if (argument.is_string()) {
      request.envelope.Parameters().Create("param", argument.get<std::string>());
    } else {
      refuse_arguments(route, expected);
    }
  }
  return request;
}

/// The namespace of the method element; only the document tells it.
std::string service_in(const std::string& text) {
  XMLDocument document;
  document.load(text);
  return document.documentElement().Nodes().ItemByName("Body").Nodes().Item(0).Namespace();
}

Request request_of_text(const Route& route, const nlohmann::json& arguments) {
  if (arguments.size() != 1 || !arguments[0].is_string()) {
    refuse_arguments(route, "one argument, the text of a request");
  }
  const auto text = arguments[0].get<std::string>();
  Request request{.envelope = SoapEnvelope::make(), .service = {}, .user_id = {}};
  request.envelope.Parse(text, "");
  request.service = service_in(text);
  const std::string method = request.envelope.MethodName();
  const bool service_fits =
      std::string_view(route.service).empty() || request.service == route.service;
  if (method != route.method || !service_fits) {
    refuse_document("The request is " + method + " in '" + request.service + "', expected " +
                    route.method + " in '" + route.service + "'");
  }
  for (const SoapNode& header : request.envelope.Headers()) {
    if (header.Name() == "userID" && header.Nodes().Count() == 0) {
      request.user_id = to_text(header.Value());
    }
  }
  return request;
}

/// The methods that a route can lead to, by their service.
using Methods = std::map<std::string, Method>;

Methods methods_of(const Operations& operations, const Route& route) {
  Methods methods;
  for (const auto& [name, method] : operations.soap) {
    const bool wanted = std::string_view(route.service).empty() || name.first == route.service;
    if (wanted && name.second == route.method) methods[name.first] = method;
  }
  return methods;
}

std::string answer_by_dal(DalCall& call, const Route& route, const Methods& methods) {
  const Request request = route.keys == kRequestText ? request_of_text(route, call.arguments)
                                                     : request_of_keys(route, call.arguments);
  const auto method = methods.find(request.service);
  if (method == methods.end()) {
    refuse_document("There is no " + std::string(route.method) + " in '" + request.service + "'");
  }
  return reply_text(request.service, route.method, [&](SoapNodes results) {
    SoapCall soap_call{.sandbox = call.sandbox,
                       .user_id = request.user_id,
                       .parameters = request.envelope.Parameters(),
                       .results = std::move(results)};
    method->second(soap_call);
  });
}

/// A fault is a text as well here, which the client reads as it would a reply.
DalAnswer run_route(DalCall& call, const Route& route, const Methods& methods) {
  try {
    return {.text = answer_by_dal(call, route, methods)};
  } catch (const Fault& fault) {
    return {.text = fault_text(fault)};
  } catch (const std::exception& error) {
    return {.text = fault_text({.code = kServerFault, .text = error.what()})};
  }
}

void add_document_routes(Operations& operations) {
  for (const Route& route : kRoutes) {
    operations.dal[{route.object, route.operation}] = {
        .run = [&route, methods = methods_of(operations, route)](DalCall& call) {
          return run_route(call, route, methods);
        }};
  }
}

}  // namespace

void add_documents(Operations& operations) {
  for (const auto rows : {project_rows, quote_rows, order_rows, comment_rows, instrument_rows,
                          submittal_rows, rma_rows}) {
    for (const DocumentRow& row : rows()) {
      operations.soap[{row.service, row.method}] = [run = row.run](SoapCall& call) {
        Transaction transaction = call.sandbox.store.transaction();
        run(call);
        transaction.commit();
      };
    }
  }
  add_document_routes(operations);
}

}  // namespace bvconn::sandbox
