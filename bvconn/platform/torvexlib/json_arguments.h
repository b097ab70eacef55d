#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "bvconn/platform/error.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn::detail {

/// The request body of an operation: `{"arguments":[…]}`, each value by its own type. Fails with
/// `Error` 13 for what JSON has no form for: text that is no UTF-8, bytes, nodes, infinities.
/// `operation` is for the description.
std::string json_arguments(std::string_view operation, std::span<const Variant> arguments);

/// The error that a reply's body tells of, `{"number":…,"source":…,"description":…}`; nothing when
/// it is anything else.
std::optional<Error> json_error(const std::string& body);

}  // namespace bvconn::detail
