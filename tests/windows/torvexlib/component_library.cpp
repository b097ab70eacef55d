#include "windows/torvexlib/component_library.h"

#include <stdexcept>

namespace bvconn::test {

RegisteredComponents::RegisteredComponents(MakeComponent make)
    : module_(::LoadLibraryW(BVCONN_TEST_COMPONENTS)) {
  if (module_ == nullptr) throw std::runtime_error("the library of components does not load");
  const auto use = reinterpret_cast<UseComponents>(
      reinterpret_cast<void*>(::GetProcAddress(module_, "UseComponents")));
  if (use == nullptr) throw std::runtime_error("it does not take its objects");
  use(make);
  ACTCTXW context{};
  context.cbSize = sizeof context;
  context.lpSource = BVCONN_TEST_MANIFEST;
  context_ = ::CreateActCtxW(&context);
  if (context_ == INVALID_HANDLE_VALUE || ::ActivateActCtx(context_, &cookie_) == FALSE) {
    throw std::runtime_error("its classes cannot be registered");
  }
}

RegisteredComponents::~RegisteredComponents() {
  ::DeactivateActCtx(0, cookie_);
  ::ReleaseActCtx(context_);
  ::FreeLibrary(module_);
}

}  // namespace bvconn::test
