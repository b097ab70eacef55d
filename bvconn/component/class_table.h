#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "bvconn/component/abi.h"

/// The classes that a host can make: the one place that names and identifiers stand in.
namespace bvconn::component {

struct ComponentClass {
  std::string_view name;
  Guid id;
  /// Of its members, which are called by name or number: the interface that a type library
  /// describes, and that the object gives for this identifier as for `IDispatch`.
  Guid interface_id;
  /// No class of the interface: an object that applications make to pass it in, or for support.
  bool helper = false;
};

/// What only comes out of calls, so that no host makes one.
struct ResultObject {
  std::string_view name;
  Guid id;
  Guid interface_id;
};

/// Of the type library that describes all of these.
inline constexpr Guid kTypeLibrary{
    0x1EAEE68B, 0x3985, 0x4111, {0xB0, 0xEF, 0xDA, 0x8F, 0x41, 0x00, 0x1F, 0x5F}};
/// Hosts look for a version of the type library that they were made with: it changes when members
/// are added, and not with each release of the library.
inline constexpr std::uint16_t kTypeLibraryMajor = 1;
inline constexpr std::uint16_t kTypeLibraryMinor = 0;

std::span<const ComponentClass> component_classes() noexcept;
std::span<const ResultObject> result_objects() noexcept;
/// The identifiers of a class or of a result object with exactly this name, and of its members;
/// kNullGuid for any other.
Guid class_id_of(std::string_view name) noexcept;
Guid interface_id_of(std::string_view name) noexcept;
/// Null when there is none.
const ComponentClass* find_component_class(const Guid& id) noexcept;
/// By one of its program identifiers, "BVConn." or "BVConnector." and the class's name, without
/// regard to case.
const ComponentClass* find_component_class(std::string_view prog_id) noexcept;

/// "BVConn.BVInvoiceConnector".
std::string prog_id_of(const ComponentClass& component_class);
/// "BVConnector.BVInvoiceConnector".
std::string library_prog_id_of(const ComponentClass& component_class);
/// "{8-4-4-4-12}" in capital digits.
std::string guid_text(const Guid& id);

}  // namespace bvconn::component
