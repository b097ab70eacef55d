#include "bvconn/component/type_info.h"

#include <string>

#include "bvconn/component/windows/install.h"
#include "bvconn/platform/windows/components.h"

namespace bvconn::component {
namespace {

// The system keeps a library that is in use, so that it is read once. Null where the file has none.
ITypeLib* own_library() noexcept {
  try {
    ITypeLib* library = nullptr;
    const HRESULT loaded = ::LoadTypeLibEx(library_file().c_str(), REGKIND_NONE, &library);
    return SUCCEEDED(loaded) ? library : nullptr;
  } catch (...) {
    return nullptr;
  }
}

}  // namespace

bool has_type_info() noexcept {
  ITypeLib* const library = own_library();
  if (library == nullptr) return false;
  library->Release();
  return true;
}

Hresult type_info_of(const Guid& id, void** info) noexcept {
  *info = nullptr;
  ITypeLib* const library = own_library();
  if (library == nullptr) return kBadIndex;
  // The records are alike: the assertions of layout_test.cpp.
  ITypeInfo* found = nullptr;
  const HRESULT result = library->GetTypeInfoOfGuid(reinterpret_cast<const GUID&>(id), &found);
  library->Release();
  *info = found;
  return SUCCEEDED(result) ? kOk : kBadIndex;
}

}  // namespace bvconn::component
