#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

/// Exchanges of the journal, as GET /admin/journal gives them, for people.
namespace bvconn::sandbox {

/// One line without its end: number, time, route, operation, outcome, status, duration and what is
/// wrong, or else the arguments.
std::string exchange_line(const nlohmann::json& exchange);

/// The whole exchange.
std::string exchange_text(const nlohmann::json& exchange);

/// What differs, a line each, found and expected side by side.
std::string differences_text(const nlohmann::json& exchange);

}  // namespace bvconn::sandbox
