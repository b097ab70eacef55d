#pragma once

#include <exception>
#include <string>
#include <string_view>

#include "bvconn/platform/soap/soap_node.h"
#include "sandbox/exchange.h"
#include "sandbox/http/message.h"
#include "sandbox/operations/operations.h"
#include "sandbox/sandbox.h"

namespace bvconn::sandbox {

/// Runs what bears this name and gives the text of the envelope that answers it.
std::string reply_text(const Operations::Name& name, const ServedMethod& method, Sandbox& sandbox,
                       std::string_view user_id, const SoapNodes& parameters);

/// The text of an envelope that holds a fault.
std::string fault_text(const Fault& fault);
/// The same of words that are as long as they may be, with a detail that is XML already; "" for
/// none.
std::string fault_text(std::string_view code, std::string_view text, std::string_view detail_xml);

/// The text as it can stand in an element.
std::string escaped(std::string_view text);

/// A reply that is such an envelope.
Reply fault_reply(int status, const Fault& fault);

/// Runs something that gives a reply; a fault that it throws, or any other error, becomes a reply
/// with `status`, and is noted as this outcome.
template <class Body>
Reply with_faults(int status, Outcome of_fault, Exchange& exchange, const Body& body) {
  Fault fault;
  try {
    return body();
  } catch (const Fault& thrown) {
    fault = thrown;
    exchange.outcome = of_fault;
  } catch (const std::exception& error) {
    fault = {.code = fault_codes::kServer, .text = error.what()};
    exchange.outcome = Outcome::kFailed;
  }
  return fault_reply(status, fault);
}

}  // namespace bvconn::sandbox
