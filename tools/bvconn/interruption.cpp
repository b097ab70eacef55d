#include "interruption.h"

#include <csignal>

#include "bvconn/platform/http/interrupted_exchanges.h"

namespace bvconn::tool {
namespace {

// One that the process was started without stays ignored, as of what runs in the background.
void (*set_handler(void (*handler)(int)))(int) {
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

}  // namespace

Interruption::Interruption()
    : before_(set_handler([](int) { detail::interrupt_exchanges(true); })) {}

Interruption::~Interruption() {
  if (before_ != SIG_IGN) set_handler(before_);
  detail::interrupt_exchanges(false);
}

bool Interruption::came() const {
  return detail::exchanges_are_interrupted();
}

}  // namespace bvconn::tool
