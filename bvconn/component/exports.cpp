#include <new>
#include <string_view>

#include "bvconn/component/abi.h"
#include "bvconn/component/class_factory.h"
#include "bvconn/component/class_table.h"
#include "bvconn/component/counted.h"
#include "bvconn/component/memory.h"
#include "bvconn/component/registration.h"
#include "bvconn/component/text.h"
#include "bvconn/platform/export.h"

// The entry points of the library. Each has the type that abi.h gives it.

using bvconn::component::ArrayRecord;
using bvconn::component::ExceptionRecord;
using bvconn::component::Guid;
using bvconn::component::Hresult;
using bvconn::component::StringPointer;
using bvconn::component::VariantRecord;
namespace component = bvconn::component;

extern "C" {

BVCONN_EXPORT Hresult DllCanUnloadNow() noexcept {
  return component::can_unload();
}

BVCONN_EXPORT Hresult DllGetClassObject(const Guid* class_id, const Guid* id,
                                        void** object) noexcept {
  if (object == nullptr) return component::kNullPointer;
  *object = nullptr;
  if (class_id == nullptr || id == nullptr) return component::kNullPointer;
  return component::guarded([&] {
    component::ObjectMaker maker = component::maker_of(*class_id);
    if (!maker) return component::kClassNotAvailable;
    const component::Reference<component::IClassFactoryAbi> factory(
        component::make_class_factory(std::move(maker)));
    return factory->QueryInterface(id, object);
  });
}

BVCONN_EXPORT Hresult DllRegisterServer() noexcept {
  return component::register_classes();
}

BVCONN_EXPORT Hresult DllUnregisterServer() noexcept {
  return component::unregister_classes();
}

BVCONN_EXPORT Hresult BVConnFindClass(const char16_t* prog_id, Guid* class_id) noexcept {
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

BVCONN_EXPORT StringPointer BVConnAllocString(const char16_t* text, std::uint32_t length) noexcept {
  return component::alloc_string(text, length);
}

BVCONN_EXPORT std::uint32_t BVConnStringLength(const char16_t* text) noexcept {
  return component::string_length(text);
}

BVCONN_EXPORT void BVConnFreeString(StringPointer text) noexcept {
  component::free_string(text);
}

BVCONN_EXPORT ArrayRecord* BVConnCreateArray(std::uint16_t element_type,
                                             std::uint32_t count) noexcept {
  return component::create_array(element_type, count);
}

BVCONN_EXPORT ArrayRecord* BVConnCreateStringArray(const char16_t* const* texts,
                                                   std::uint32_t count) noexcept {
  return component::create_string_array(texts, count);
}

BVCONN_EXPORT Hresult BVConnDestroyArray(ArrayRecord* array) noexcept {
  if (array == nullptr) return component::kNullPointer;
  return component::destroy_array(array, component::element_type_of(*array));
}

BVCONN_EXPORT Hresult BVConnCopyVariant(VariantRecord* target,
                                        const VariantRecord* source) noexcept {
  return component::copy_variant(target, source);
}

BVCONN_EXPORT Hresult BVConnClearVariant(VariantRecord* variant) noexcept {
  return component::clear_variant(variant);
}

BVCONN_EXPORT void BVConnClearException(ExceptionRecord* exception) noexcept {
  component::clear_exception(exception);
}

}  // extern "C"
