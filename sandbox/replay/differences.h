#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sandbox/replay/asked_request.h"

namespace bvconn::sandbox {

/// Whether a recorded text stands for this one. What was masked in it ("***") stands for any text,
/// so that no secret has to be known where a recording is replayed.
bool stands_for(std::string_view recorded, std::string_view text);

/// Whether both ask the same of the same service, whatever their arguments.
bool is_same_operation(const AskedRequest& recorded, const AskedRequest& asked);

/// Whether the recorded request stands for this one.
bool stands_for(const AskedRequest& recorded, const AskedRequest& asked);

/// All in which a recorded request differs, for people: "strInvoiceUID is 'INV-1' there, 'INV-2'
/// here".
std::vector<std::string> differences(const AskedRequest& recorded, const AskedRequest& asked);

}  // namespace bvconn::sandbox
