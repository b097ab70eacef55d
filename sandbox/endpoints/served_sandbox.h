#pragma once

#include <memory>
#include <string>
#include <vector>

#include "sandbox/calls/caller.h"
#include "sandbox/faults/fault_book.h"
#include "sandbox/sandbox.h"

namespace bvconn::sandbox {

/// The sandbox with what stands between it and its clients, of which operations know nothing.
struct ServedSandbox : Sandbox {
  /// What was asked to go wrong; it guards itself.
  std::unique_ptr<FaultBook> faults = std::make_unique<MemoryFaultBook>();
  /// By which names the sandbox is asked besides those of the loopback address, in lower case: what
  /// stands in the header Host, without a port.
  std::vector<std::string> allowed_hosts{};
  /// Makes the calls of the page; null where there are none.
  std::shared_ptr<Caller> caller{};
  /// The library's operations, as "BVInvoiceConnector.GetInvoice"; never changes.
  std::vector<std::string> operation_names{};
  /// What whoever asks for /admin/ has to know; "" where anybody may. Never changes.
  std::string admin_token{};
};

}  // namespace bvconn::sandbox
