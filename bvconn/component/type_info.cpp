#include "bvconn/component/type_info.h"

namespace bvconn::component {

bool has_type_info() noexcept {
  return false;
}

void release_type_info() noexcept {}

Hresult type_info_of(const Guid& /*id*/, void** info) noexcept {
  *info = nullptr;
  return kBadIndex;
}

}  // namespace bvconn::component
