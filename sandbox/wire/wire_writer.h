#pragma once

#include <string>

#include "sandbox/wire/wire_file.h"

namespace bvconn::wire {

/// A case as it stands in a wire file; `read_wire_file` reads the same one again, but for the
/// numbers of lines. Texts other than request, text, reply and raw must not hold ends of lines or
/// blanks around them.
std::string wire_case_text(const WireCase& wire_case);

}  // namespace bvconn::wire
