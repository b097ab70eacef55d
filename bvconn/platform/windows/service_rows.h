#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// The operations of the service objects as components offer them.
namespace bvconn::detail {

struct ServiceRow {
  std::string_view object;
  std::string_view operation;
  std::uint32_t references = 0;  ///< a bit for each argument that is declared as a reference

  bool is_reference(std::size_t argument) const {
    return argument < 32 && ((references >> argument) & 1U) != 0;
  }
};

std::span<const ServiceRow> service_rows();
/// An empty row for an operation that no connector calls.
const ServiceRow& service_row(std::string_view object, std::string_view operation);

}  // namespace bvconn::detail
