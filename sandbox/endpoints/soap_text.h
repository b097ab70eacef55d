#pragma once

#include <string>
#include <string_view>

#include "bvconn/platform/soap/soap_node.h"
#include "sandbox/operations/operations.h"

namespace bvconn::sandbox {

/// Runs what bears this name and gives the text of the envelope that answers it.
std::string reply_text(const Operations::Name& name, const Method& method, Sandbox& sandbox,
                       std::string_view user_id, const SoapNodes& parameters);

/// The text of an envelope that holds a fault.
std::string fault_text(const Fault& fault);

/// The text as it can stand in an element.
std::string escaped(std::string_view text);

}  // namespace bvconn::sandbox
