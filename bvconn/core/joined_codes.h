#pragma once

#include <string>
#include <vector>

namespace bvconn {

/// The form in which the data access layer takes a list of codes: each without the blanks around
/// it, with ";" in between. No codes give ""; an empty code keeps its place.
/// deliberate [joined-codes]: by SOAP the same codes go as they are, blanks and all.
std::string joined_codes(const std::vector<std::string>& codes);

}  // namespace bvconn
