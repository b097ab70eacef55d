#pragma once

#include <string_view>

namespace bvconn::detail {

/// The key that all settings of the library lie under, in either root.
inline constexpr std::string_view kSettingsKey = R"(Software\Brimvale\Torvex\AppData)";

/// Of the local machine, and on Windows alone: "component", "http", or nothing for the component
/// where there is one.
inline constexpr std::string_view kServiceObjectsSetting = "ServiceObjects";
/// The key below, whose values are the identifiers of the components' interfaces by their names.
inline constexpr std::string_view kServiceInterfacesKey =
    R"(Software\Brimvale\Torvex\AppData\ServiceInterfaces)";

}  // namespace bvconn::detail
