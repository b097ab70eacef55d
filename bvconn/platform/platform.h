#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "bvconn/platform/clock.h"
#include "bvconn/platform/exchange/exchange_log.h"
#include "bvconn/platform/export.h"
#include "bvconn/platform/http/http_transport.h"
#include "bvconn/platform/logging/session_logger.h"
#include "bvconn/platform/message_box.h"
#include "bvconn/platform/settings/registry_access.h"
#include "bvconn/platform/torvexlib/service_object.h"

namespace bvconn::detail {
class ThreadScope;
}

namespace bvconn::platform {

/// The outside world as the library sees it: one factory for each thing. Every thread's session
/// makes its own objects through these, at first use.
struct BVCONN_EXPORT Platform {
  std::function<std::shared_ptr<HTTPTransport>()> transport;
  std::function<std::shared_ptr<SessionLogger>()> logger;
  std::function<std::unique_ptr<RegistryAccess>()> settings;
  /// Makes a service object of the data access layer by its name.
  std::function<std::shared_ptr<ServiceObject>(std::string_view name)> service_object;
  std::function<std::shared_ptr<Clock>()> clock;
  std::function<std::shared_ptr<ModalMessage>()> message_box;
  /// Makes what is shown each exchange, masked, when its call has ended. It may be missing, and so
  /// may what it makes.
  std::function<ExchangeLog::Listener()> exchange_listener{};
};

/// The real world: libcurl, files, the system's clock.
BVCONN_EXPORT Platform system_platform();

/// The platform in force.
BVCONN_EXPORT const Platform& current();

/// Replaces the process's platform. To be called before the library's first use: sessions that have
/// made their objects keep them.
BVCONN_EXPORT void install(Platform platform);

/// Replaces the platform for the lifetime of this object, for tests, and gives the thread that made
/// it a fresh session, which makes its objects through that platform. At its end, on the same
/// thread, platform and session are those that it found, untouched. Scopes nest. No other thread
/// may be inside the library when it is made or destroyed; the sessions of other threads stay.
class BVCONN_EXPORT ScopedPlatform {
 public:
  explicit ScopedPlatform(Platform platform);
  ~ScopedPlatform();
  ScopedPlatform(const ScopedPlatform&) = delete;
  ScopedPlatform& operator=(const ScopedPlatform&) = delete;

 private:
  Platform previous_;
  std::unique_ptr<detail::ThreadScope> session_;
};

}  // namespace bvconn::platform
