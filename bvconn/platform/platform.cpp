#include "bvconn/platform/platform.h"

#include <utility>

namespace bvconn::platform {
namespace {

Platform& installed() {
  static Platform platform = system_platform();
  return platform;
}

}  // namespace

Platform system_platform() {
  return Platform{
      .transport = make_http_transport,
      .logger = make_file_logger,
      .settings = make_settings_files,
      .service_object = make_http_service_object,
      .clock = make_system_clock,
      .message_box = make_stderr_message_box,
  };
}

const Platform& current() {
  return installed();
}

void install(Platform platform) {
  installed() = std::move(platform);
}

ScopedPlatform::ScopedPlatform(Platform platform)
    : previous_(std::exchange(installed(), std::move(platform))) {}

ScopedPlatform::~ScopedPlatform() {
  installed() = std::move(previous_);
}

}  // namespace bvconn::platform
