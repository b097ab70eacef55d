#include "bvconn/platform/http/quiet_socket.h"

#include "bvconn/platform/windows/system.h"

namespace bvconn::detail {

bool is_quiet(curl_socket_t socket) noexcept {
  WSAPOLLFD kept{};
  kept.fd = socket;
  kept.events = POLLRDNORM;
  return ::WSAPoll(&kept, 1, 0) == 0;
}

}  // namespace bvconn::detail
