#include <string_view>

#include "bvconn/component/abi.h"
#include "bvconn/component/class_table.h"
#include "bvconn/component/counted.h"
#include "bvconn/component/memory.h"
#include "bvconn/component/text.h"
#include "bvconn/platform/export.h"

// What hosts need besides the entry points where the platform does not bring it: texts, arrays and
// variants in common memory, and classes by their names.

using bvconn::component::ArrayRecord;
using bvconn::component::ExceptionRecord;
using bvconn::component::Guid;
using bvconn::component::Hresult;
using bvconn::component::StringPointer;
using bvconn::component::VariantRecord;
namespace component = bvconn::component;

extern "C" {

BVCONN_EXPORT Hresult BVCONN_CALL BVConnFindClass(const char16_t* prog_id,
                                                  Guid* class_id) noexcept {
  if (prog_id == nullptr || class_id == nullptr) return component::kNullPointer;
  *class_id = component::kNullGuid;
  return component::guarded([&] {
    const auto name = component::utf8_from_utf16(std::u16string_view(prog_id));
    const auto* const row = name ? component::find_component_class(*name) : nullptr;
    if (row == nullptr) return component::kClassNotAvailable;
    *class_id = row->id;
    return component::kOk;
  });
}

BVCONN_EXPORT StringPointer BVCONN_CALL BVConnAllocString(const char16_t* text,
                                                          std::uint32_t length) noexcept {
  return component::alloc_string(text, length);
}

BVCONN_EXPORT std::uint32_t BVCONN_CALL BVConnStringLength(const char16_t* text) noexcept {
  return component::string_length(text);
}

BVCONN_EXPORT void BVCONN_CALL BVConnFreeString(StringPointer text) noexcept {
  component::free_string(text);
}

BVCONN_EXPORT ArrayRecord* BVCONN_CALL BVConnCreateArray(std::uint16_t element_type,
                                                         std::uint32_t count) noexcept {
  return component::create_array(element_type, count);
}

BVCONN_EXPORT ArrayRecord* BVCONN_CALL BVConnCreateStringArray(const char16_t* const* texts,
                                                               std::uint32_t count) noexcept {
  return component::create_string_array(texts, count);
}

BVCONN_EXPORT Hresult BVCONN_CALL BVConnDestroyArray(ArrayRecord* array) noexcept {
  if (array == nullptr) return component::kNullPointer;
  return component::destroy_array(array, component::element_type_of(*array));
}

BVCONN_EXPORT Hresult BVCONN_CALL BVConnCopyVariant(VariantRecord* target,
                                                    const VariantRecord* source) noexcept {
  return component::copy_variant(target, source);
}

BVCONN_EXPORT Hresult BVCONN_CALL BVConnClearVariant(VariantRecord* variant) noexcept {
  return component::clear_variant(variant);
}

BVCONN_EXPORT void BVCONN_CALL BVConnClearException(ExceptionRecord* exception) noexcept {
  component::clear_exception(exception);
}

}  // extern "C"
