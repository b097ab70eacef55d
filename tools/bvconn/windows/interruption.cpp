#include "interruption.h"

#include <csignal>

#include "bvconn/platform/http/interrupted_exchanges.h"

namespace bvconn::tool {
namespace {

// Whose handler was called once is the system's again here: a second interrupt ends the process.
// One that the process was started without stays ignored.
void (*set_handler(void (*handler)(int)))(int) {
  void (*const before)(int) = std::signal(SIGINT, handler);
  if (before == SIG_IGN) std::signal(SIGINT, SIG_IGN);
  return before;
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
