#include "interruption.h"

#include <csignal>

#include "bvconn/platform/http/interrupted_exchanges.h"
#include "interrupt_handler.h"

namespace bvconn::tool {

Interruption::Interruption()
    : before_(set_interrupt_handler([](int) { detail::interrupt_exchanges(true); })) {}

Interruption::~Interruption() {
  if (before_ != SIG_IGN) set_interrupt_handler(before_);
  detail::interrupt_exchanges(false);
}

bool Interruption::came() const {
  return detail::exchanges_are_interrupted();
}

}  // namespace bvconn::tool
