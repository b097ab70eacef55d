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
/// The same of words that are as long as they may be, with a detail that is XML already; "" for
/// none.
std::string fault_text(std::string_view code, std::string_view text, std::string_view detail_xml);

/// The text as it can stand in an element.
std::string escaped(std::string_view text);

}  // namespace bvconn::sandbox
