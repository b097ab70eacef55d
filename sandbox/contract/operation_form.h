#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bvconn::sandbox {

/// One form in which an operation of the library asks: its name, and which of its arguments lie in
/// which place of the request. Places are the parameters of an envelope, or the arguments of a call
/// of the data access layer.
struct OperationForm {
  struct Place {
    /// Name of the argument in the interface; "" where it is none, or several in one.
    std::string argument;
    /// What a place without arguments always holds.
    std::string constant{};
    bool is_constant = false;
  };

  std::string name;  ///< class and operation, "BVInvoiceConnector.GetInvoice"
  std::vector<Place> places;
  /// The argument that goes into the header userID; "" where there is none.
  std::string session_argument{};

  /// The place that carries this argument.
  std::optional<std::size_t> place_of(std::string_view argument) const {
    const auto found = std::find_if(places.begin(), places.end(),
                                    [&](const Place& each) { return each.argument == argument; });
    if (argument.empty() || found == places.end()) return std::nullopt;
    return static_cast<std::size_t>(found - places.begin());
  }
};

}  // namespace bvconn::sandbox
