// Declares them on Windows too.
#define BVCONN_ENTRY_POINTS
#include "bvconn/component/abi.h"
#include "bvconn/component/class_factory.h"
#include "bvconn/component/counted.h"
#include "bvconn/component/registration.h"
#include "bvconn/component/type_info.h"
#include "bvconn/platform/export.h"

// The entry points that every component has. Each has the type that abi.h gives it.

using bvconn::component::Guid;
using bvconn::component::Hresult;
namespace component = bvconn::component;

extern "C" {

BVCONN_EXPORT Hresult BVCONN_CALL DllCanUnloadNow() noexcept {
  const Hresult answer = component::can_unload();
  if (answer == component::kOk) component::release_type_info();
  return answer;
}

BVCONN_EXPORT Hresult BVCONN_CALL DllGetClassObject(const Guid* class_id, const Guid* id,
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

BVCONN_EXPORT Hresult BVCONN_CALL DllRegisterServer() noexcept {
  return component::register_classes();
}

BVCONN_EXPORT Hresult BVCONN_CALL DllUnregisterServer() noexcept {
  return component::unregister_classes();
}

}  // extern "C"
