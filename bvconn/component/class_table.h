#pragma once

#include <span>
#include <string>
#include <string_view>

#include "bvconn/component/abi.h"

/// The classes that a host can make: the one place that names and identifiers stand in.
namespace bvconn::component {

struct ComponentClass {
  std::string_view name;
  Guid id;
  /// No class of the interface: an object that applications make to pass it in, or for support.
  bool helper = false;
};

std::span<const ComponentClass> component_classes() noexcept;
/// Null when there is none.
const ComponentClass* find_component_class(const Guid& id) noexcept;
/// By its program identifier, "BVConn." and the class's name, without regard to case.
const ComponentClass* find_component_class(std::string_view prog_id) noexcept;

/// "BVConn.BVInvoiceConnector".
std::string prog_id_of(const ComponentClass& component_class);
/// "{8-4-4-4-12}" in capital digits.
std::string guid_text(const Guid& id);

}  // namespace bvconn::component
