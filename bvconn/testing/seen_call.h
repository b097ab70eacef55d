#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/exchange/exchange.h"
#include "bvconn/platform/soap/soap_envelope.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn::test {

/// One request that a test's world was asked to answer. What does not apply to its route is empty.
struct SeenCall {
  /// Class and operation of the interface that asked, "BVInvoiceConnector" and "GetInvoice"; empty
  /// where the application has used the transport itself.
  std::string cls;
  std::string operation;
  ExchangeRoute route = ExchangeRoute::kSoap;

  // The SOAP route.
  std::string url;
  std::optional<std::string> soap_action;
  std::int32_t timeout_ms = 0;
  std::string text;  ///< the whole request

  // The data access layer.
  std::string object;            ///< "SearchService"
  std::string object_operation;  ///< "SearchForCustomer"
  std::vector<Variant> arguments;
  bool by_name = false;

  /// "BVInvoiceConnector.GetInvoice"; where no operation asked, the service object and its
  /// operation, or "a request".
  std::string name() const;
  /// Whether this is the call's name, or that of its service object and operation.
  bool is(std::string_view asked_name) const;
  /// The request, read: on the data access layer that of a save, which goes there as a text. Fails
  /// as `SoapEnvelope::Parse` does where there is none.
  SoapEnvelope envelope() const;
  /// The request's parameters, in wire order.
  SoapNodes parameters() const;
  /// The session identifier that the request bears; "" for none.
  std::string session_id() const;
  /// The texts of all parameters that have one, however deep, and of the arguments, in order.
  std::vector<std::string> texts() const;
  /// All of it in one line, for messages.
  std::string shown() const;
};

}  // namespace bvconn::test
