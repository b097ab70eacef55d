#include "bvconn/platform/settings/system_settings.h"

namespace bvconn::detail {

std::unique_ptr<RegistryAccess> make_settings() {
  return make_settings_files();
}

}  // namespace bvconn::detail
