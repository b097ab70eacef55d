#pragma once

#include "bvconn/automation/interface.h"
#include "bvconn/component/abi.h"
#include "bvconn/component/foreign_objects.h"
#include "bvconn/component/memory.h"

/// Variants of a host to values of the library and back.
namespace bvconn::component {

/// Whether the variant is the marker of an argument that was left out, also by reference.
bool is_missing(const VariantRecord& record) noexcept;

/// Follows references until the value itself; kNullPointer for a null one, kTypeMismatch for a
/// chain of variants that does not end.
Hresult dereference(const VariantRecord& record, VariantRecord& value) noexcept;

/// The value that an argument of this type takes; conversions are the platform's. kTypeMismatch or
/// kOverflow for what does not convert, kNullPointer for a null reference. The documents are to
/// outlive the value, and are loaded once it has been used.
Hresult value_from_record(const VariantRecord& record, automation::ValueType type,
                          automation::Value& value, CallDocuments& documents);

/// What a call gave, for the host to own: nodes, envelopes, transports and service objects become
/// objects that answer by name, empty references null objects.
OwnedVariant record_from_value(const automation::Value& value);
OwnedVariant record_from_variant(const Variant& value);
/// Takes over a counted reference; null is a null object.
OwnedVariant record_from_object(IDispatchAbi* object) noexcept;

}  // namespace bvconn::component
