#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "bvconn/platform/soap/variant.h"
#include "bvconn/platform/windows/components.h"

/// Values of the library as components of others take and give them.
namespace bvconn::detail {

/// A variant of the system's, cleared with this object.
struct SystemVariant : VARIANT {
  SystemVariant() noexcept { ::VariantInit(this); }
  SystemVariant(SystemVariant&& other) noexcept : VARIANT(other) { ::VariantInit(&other); }
  SystemVariant(const SystemVariant&) = delete;
  SystemVariant& operator=(const SystemVariant&) = delete;
  SystemVariant& operator=(SystemVariant&&) = delete;
  ~SystemVariant() { ::VariantClear(this); }
};

/// Where an argument stands, for the description of an error.
struct ArgumentPlace {
  std::string_view operation;
  std::size_t number = 0;  ///< from 1
};

/// The value by its own type. Fails with `Error` 13 for a text that is no UTF-8, and for a node.
SystemVariant system_variant(const Variant& value, const ArgumentPlace& place);

/// A text that the system is to own; throws std::bad_alloc when memory is short.
BSTR system_text(std::string_view text);

/// The text that an operation gave, "" where it gave nothing. Fails with `Error` 13, which says
/// what it is, for what is no text.
std::string given_text(const VARIANT& given, std::string_view operation);

}  // namespace bvconn::detail
