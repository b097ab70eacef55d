#pragma once

#include <string>
#include <vector>

#include "bvconn/observation/observe.h"
#include "sandbox/contract/contract.h"
#include "sandbox/contract/dal_routes.h"
#include "sandbox/exchange.h"
#include "sandbox/http/message.h"
#include "sandbox/wire/wire_file.h"

namespace bvconn::sandbox {

/// A request as recordings compare it: what is asked, and with which arguments. Nothing that tells
/// who asks belongs to it: no session, no token, no other header.
struct AskedRequest {
  struct Argument {
    /// As the interface names it, else as the request does, else its number.
    std::string name;
    std::string text;
  };

  Route route = Route::kSoap;
  /// Namespace and method, or object and operation. Empty for what cannot be read, whose whole body
  /// is the one argument.
  std::string service;
  std::string method;
  /// The operations of the library that it can come from, "BVInvoiceConnector.GetInvoice".
  std::vector<std::string> operations;
  std::vector<Argument> arguments;

  /// Its operation, or its method where no operation asks so.
  std::string title() const;
};

/// Reads requests of both routes by what the library's operations send.
class RequestReader {
 public:
  /// Runs the whole library, so before there is a second thread.
  RequestReader() : RequestReader(automation::observe_all()) {}
  explicit RequestReader(const std::vector<automation::ObservedOperation>& observations);

  /// Of a POST to /soap, or to below /dal/.
  AskedRequest read(const Request& request) const;

 private:
  bool read_envelope(const std::string& text, const Request& request, AskedRequest& asked) const;
  void read_call(const Request& request, AskedRequest& asked) const;

  Contract contract_;
  DalRoutes dal_routes_;
};

/// The request that a step of a wire file describes. Throws std::runtime_error for a line `dal`
/// that is no call.
Request http_request_of(const wire::WireStep& step);

}  // namespace bvconn::sandbox
