#pragma once

#include <map>
#include <string>
#include <string_view>

#include "hostile/hostile_file.h"
#include "support/misbehaving_server.h"

namespace bvconn::test {

/// What stands for what in a text: "canary" for an address, for instance.
using Holes = std::map<std::string, std::string, std::less<>>;

/// A text of a file as the bytes that it stands for: escapes, holes and repetitions are resolved.
/// Fails with `std::runtime_error` for a text that is none of a file.
std::string expanded(std::string_view text, const Holes& holes);

/// A SOAP envelope around what stands in its Body.
std::string envelope_around(std::string_view body);

/// An envelope around what stands in the method's response element.
std::string response_around(std::string_view parameters);

/// The steps of one moment, as the server takes them.
Answer answer_of(const HostileCase& hostile, HostileStep::Moment moment, const Holes& holes);

}  // namespace bvconn::test
