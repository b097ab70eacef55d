#include "bvconn/component/type_info.h"

namespace bvconn::component {

bool has_type_info() noexcept {
  return false;
}

Hresult type_info_of(const Guid& /*id*/, void** info) noexcept {
  *info = nullptr;
  return kBadIndex;
}

}  // namespace bvconn::component
