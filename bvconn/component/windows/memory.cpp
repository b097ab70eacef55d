#include "bvconn/component/memory.h"

#include "bvconn/platform/windows/components.h"

// Arrays and variants are the system's: hosts free what they are given by its functions, and pass
// in what these have made.
namespace bvconn::component {
namespace {

SAFEARRAY* systems(ArrayRecord* array) {
  return reinterpret_cast<SAFEARRAY*>(array);
}

}  // namespace

ArrayRecord* create_array(std::uint16_t element_type, std::uint32_t count) noexcept {
  if (element_size(element_type) == 0) return nullptr;
  return reinterpret_cast<ArrayRecord*>(::SafeArrayCreateVector(element_type, 0, count));
}

Hresult destroy_array(ArrayRecord* array, std::uint16_t /*element_type*/) noexcept {
  return array == nullptr ? kOk : ::SafeArrayDestroy(systems(array));
}

std::uint16_t element_type_of(const ArrayRecord& array) noexcept {
  VARTYPE type = VT_EMPTY;
  const HRESULT result = ::SafeArrayGetVartype(systems(const_cast<ArrayRecord*>(&array)), &type);
  return succeeded(result) ? type : variant_type::kEmpty;
}

Hresult clear_variant(VariantRecord* variant) noexcept {
  if (variant == nullptr) return kNullPointer;
  const HRESULT result = ::VariantClear(reinterpret_cast<VARIANT*>(variant));
  if (succeeded(result)) *variant = VariantRecord{};
  return result;
}

Hresult copy_variant(VariantRecord* target, const VariantRecord* source) noexcept {
  if (target == nullptr || source == nullptr) return kNullPointer;
  return ::VariantCopy(reinterpret_cast<VARIANT*>(target),
                       reinterpret_cast<VARIANT*>(const_cast<VariantRecord*>(source)));
}

}  // namespace bvconn::component
