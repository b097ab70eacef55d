#pragma once

#include <utility>

#include "bvconn/component/abi.h"

/// Arrays and variants as memory: making, copying, freeing. What they mean is in values.h.
namespace bvconn::component {

/// Size of an element of an array of this type; 0 for a type that arrays cannot have here.
std::uint32_t element_size(std::uint16_t element_type) noexcept;

/// A new array of one dimension from index 0, its elements zeroed; null when memory is short or
/// the type is none that an array can have.
ArrayRecord* create_array(std::uint16_t element_type, std::uint32_t count) noexcept;
/// A new array of texts, each copied up to its zero; a null one stays null.
ArrayRecord* create_string_array(const char16_t* const* texts, std::uint32_t count) noexcept;
/// Frees an array of ours with its elements. kArrayIsLocked while it is locked.
Hresult destroy_array(ArrayRecord* array, std::uint16_t element_type) noexcept;
/// The type that the array itself bears, kEmpty where it bears none.
std::uint16_t element_type_of(const ArrayRecord& array) noexcept;

/// Frees what the variant owns and makes it empty.
Hresult clear_variant(VariantRecord* variant) noexcept;
/// Copies a variant with all that it owns: texts and arrays anew, objects by a further reference.
/// What `target` held is freed first. A reference is copied as a reference.
Hresult copy_variant(VariantRecord* target, const VariantRecord* source) noexcept;
/// Frees the texts and makes the record empty.
void clear_exception(ExceptionRecord* exception) noexcept;

/// A variant that is cleared at the end of its scope, unless it was handed on.
class OwnedVariant {
 public:
  OwnedVariant() = default;
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
  OwnedVariant(OwnedVariant&& other) noexcept : record_(std::exchange(other.record_, {})) {}
  OwnedVariant& operator=(OwnedVariant&& other) noexcept {
    std::swap(record_, other.record_);
    return *this;
  }
  ~OwnedVariant() { clear_variant(&record_); }

  VariantRecord& operator*() { return record_; }
  const VariantRecord& operator*() const { return record_; }
  VariantRecord* operator->() { return &record_; }
  VariantRecord release() { return std::exchange(record_, {}); }

 private:
  VariantRecord record_{};
};

}  // namespace bvconn::component
