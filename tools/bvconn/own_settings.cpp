#include "own_settings.h"

namespace bvconn::tool {

std::span<const LibrarySetting> own_settings() {
  return {};
}

}  // namespace bvconn::tool
