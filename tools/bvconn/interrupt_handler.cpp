#include "interrupt_handler.h"

#include <csignal>

namespace bvconn::tool {

// One that the process was started without stays ignored, as of what runs in the background.
void (*set_interrupt_handler(void (*handler)(int)))(int) {
  struct sigaction action {};
  struct sigaction before {};
  ::sigaction(SIGINT, nullptr, &before);
  if (before.sa_handler == SIG_IGN) return SIG_IGN;
  action.sa_handler = handler;
  ::sigemptyset(&action.sa_mask);
  if (handler != SIG_DFL) action.sa_flags = static_cast<int>(SA_RESETHAND);
  ::sigaction(SIGINT, &action, nullptr);
  return before.sa_handler;
}

}  // namespace bvconn::tool
