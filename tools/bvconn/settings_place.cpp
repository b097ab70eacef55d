#include "settings_place.h"

namespace bvconn::tool {

SettingsPlace settings_place(SettingsRoot root) {
  return {.name = settings_file(root)};
}

}  // namespace bvconn::tool
