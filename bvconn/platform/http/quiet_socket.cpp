#include "bvconn/platform/http/quiet_socket.h"

#include <poll.h>

namespace bvconn::detail {

bool is_quiet(curl_socket_t socket) noexcept {
  pollfd kept{socket, POLLIN, 0};
  return poll(&kept, 1, 0) == 0;
}

}  // namespace bvconn::detail
