#pragma once

#include <memory>
#include <string>
#include <vector>

#include "sandbox/faults/fault_book.h"
#include "sandbox/sandbox.h"

namespace bvconn::sandbox {

/// The sandbox with what stands between it and its clients, of which operations know nothing.
struct ServedSandbox : Sandbox {
  /// What was asked to go wrong; it guards itself.
  std::unique_ptr<FaultBook> faults = std::make_unique<MemoryFaultBook>();
  /// The library's operations, as "BVInvoiceConnector.GetInvoice"; never changes.
  std::vector<std::string> operation_names{};
  /// What whoever asks for /admin/ has to know; "" where anybody may. Never changes.
  std::string admin_token{};
};

}  // namespace bvconn::sandbox
