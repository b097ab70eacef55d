#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "bvconn/platform/soap/soap_node.h"
#include "sandbox/operations/operations.h"

namespace bvconn::sandbox {

/// The text of an envelope that answers `method` of `service`, with the results that `add` appends.
std::string reply_text(std::string_view service, std::string_view method,
                       const std::function<void(SoapNodes results)>& add);

/// The text of an envelope that holds a fault.
std::string fault_text(const Fault& fault);

}  // namespace bvconn::sandbox
