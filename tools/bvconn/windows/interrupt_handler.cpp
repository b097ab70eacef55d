#include "interrupt_handler.h"

#include <csignal>

namespace bvconn::tool {

// Whose handler was called once is the system's again here: a second interrupt ends the process.
void (*set_interrupt_handler(void (*handler)(int)))(int) {
  void (*const before)(int) = std::signal(SIGINT, handler);
  if (before == SIG_IGN) std::signal(SIGINT, SIG_IGN);
  return before;
}

}  // namespace bvconn::tool
