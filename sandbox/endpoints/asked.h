#pragma once

#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "bvconn/platform/soap/variant.h"
#include "sandbox/contract/dal_routes.h"
#include "sandbox/endpoints/soap_request.h"
#include "sandbox/exchange.h"
#include "sandbox/http/message.h"
#include "sandbox/operations/operations.h"
#include "sandbox/sandbox.h"

namespace bvconn::sandbox {

/// A request that was read, as far as that was possible: on its way to its answer.
struct Asked {
  /// What is known of it; more or less complete where it is refused.
  Exchange exchange{};
  /// The envelope: of the SOAP route, or the text of a request on the data access layer.
  std::optional<SoapRequest> soap{};
  /// On the data access layer.
  const DalRoute* dal_route = nullptr;
  std::vector<Variant> arguments{};
  /// The answer to a request that cannot be read or that does not fit.
  std::optional<Reply> refusal{};
};

/// Reads a request to /soap, and one to /dal/{Object}/{Operation}.
Asked read_soap(const Sandbox& sandbox, const Request& request);
Asked read_dal(Sandbox& sandbox, const Operations& operations, const Request& request);

/// Answers what was read and is not refused, and notes what becomes of it.
Reply answer_soap(Sandbox& sandbox, const Operations& operations, Asked& asked);
Reply answer_dal(Sandbox& sandbox, const Operations& operations, Asked& asked);
/// Answers on either route that the sandbox itself has failed.
Reply answer_error(const Operations& operations, Asked& asked, const std::exception& error);

}  // namespace bvconn::sandbox
