#include "bvconn/platform/platform.h"

#include <utility>

#include "bvconn/platform/exchange/exchange_file.h"
#include "bvconn/platform/platform_message_box.h"
#include "bvconn/platform/settings/system_settings.h"
#include "bvconn/platform/thread_record.h"
#include "bvconn/platform/torvexlib/system_service_object.h"

namespace bvconn::platform {
namespace {

Platform& installed() {
  // Never destroyed: an object of static lifetime may write its last log lines later than anything.
  static auto& platform = *new Platform(system_platform());
  return platform;
}

}  // namespace

Platform system_platform() {
  return Platform{
      .transport = make_http_transport,
      .logger = make_file_logger,
      .settings = detail::make_settings,
      .service_object = detail::make_service_object,
      .clock = make_system_clock,
      .message_box = detail::make_message_box,
      .exchange_listener = make_exchange_file,
  };
}

const Platform& current() {
  return installed();
}

void install(Platform platform) {
  installed() = std::move(platform);
}

ScopedPlatform::ScopedPlatform(Platform platform)
    : session_(std::make_unique<detail::ThreadScope>()) {
  previous_ = std::exchange(installed(), std::move(platform));
}

ScopedPlatform::~ScopedPlatform() {
  session_.reset();
  installed() = std::move(previous_);
}

}  // namespace bvconn::platform
