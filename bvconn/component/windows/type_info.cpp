#include "bvconn/component/type_info.h"

#include <utility>

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

// It is read from the file once for all objects, and let go where the host asks whether the library
// may go: during its unloading no other library may be called any more.
constinit SRWLOCK library_lock = SRWLOCK_INIT;
constinit ITypeLib* kept_library = nullptr;

// Holds the lock as long as it lives.
class Locked {
 public:
  Locked() noexcept { ::AcquireSRWLockExclusive(&library_lock); }
  ~Locked() { ::ReleaseSRWLockExclusive(&library_lock); }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;
};

// Null where the file has none. Under the lock.
ITypeLib* own_library() noexcept {
  if (kept_library == nullptr) kept_library = load_library();
  return kept_library;
}

}  // namespace

bool has_type_info() noexcept {
  const Locked locked;
  return own_library() != nullptr;
}

void release_type_info() noexcept {
  const Locked locked;
  ITypeLib* const library = std::exchange(kept_library, nullptr);
  if (library != nullptr) library->Release();
}

Hresult type_info_of(const Guid& id, void** info) noexcept {
  *info = nullptr;
  const Locked locked;
  ITypeLib* const library = own_library();
  if (library == nullptr) return kBadIndex;
  // The records are alike: the assertions of layout_test.cpp.
  ITypeInfo* found = nullptr;
  const HRESULT result = library->GetTypeInfoOfGuid(reinterpret_cast<const GUID&>(id), &found);
  *info = found;
  return SUCCEEDED(result) ? kOk : kBadIndex;
}

}  // namespace bvconn::component
