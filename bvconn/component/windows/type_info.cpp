#include "bvconn/component/type_info.h"

#include <atomic>
#include <string>

#include "bvconn/component/windows/install.h"
#include "bvconn/platform/windows/components.h"

namespace bvconn::component {
namespace {

ITypeLib* load_library() noexcept {
  try {
    ITypeLib* library = nullptr;
    const HRESULT loaded = ::LoadTypeLibEx(library_file().c_str(), REGKIND_NONE, &library);
    return SUCCEEDED(loaded) ? library : nullptr;
  } catch (...) {
    return nullptr;
  }
}

// Null where the file has none. It is read from the file once, and kept until the process ends:
// while the library is unloaded, other libraries may not be called any more.
ITypeLib* own_library() noexcept {
  static constinit std::atomic<ITypeLib*> kept = nullptr;
  ITypeLib* library = kept;
  if (library != nullptr) return library;
  ITypeLib* const loaded = load_library();
  if (loaded == nullptr || kept.compare_exchange_strong(library, loaded)) return loaded;
  // Another thread was faster.
  loaded->Release();
  return library;
}

}  // namespace

bool has_type_info() noexcept {
  return own_library() != nullptr;
}

Hresult type_info_of(const Guid& id, void** info) noexcept {
  *info = nullptr;
  ITypeLib* const library = own_library();
  if (library == nullptr) return kBadIndex;
  // The records are alike: the assertions of layout_test.cpp.
  ITypeInfo* found = nullptr;
  const HRESULT result = library->GetTypeInfoOfGuid(reinterpret_cast<const GUID&>(id), &found);
  *info = found;
  return SUCCEEDED(result) ? kOk : kBadIndex;
}

}  // namespace bvconn::component
