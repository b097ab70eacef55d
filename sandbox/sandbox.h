#pragma once

#include <memory>

#include "sandbox/contract/contract.h"
#include "sandbox/contract/dal_routes.h"
#include "sandbox/store/stores.h"
#include "sandbox/stubs/stub.h"

namespace bvconn::sandbox {

class Journal;

/// What all endpoints and operations share. Requests are read and answered on several threads; what
/// does not guard itself never changes.
struct Sandbox {
  /// Guard themselves.
  Stores stores;
  Contract contract;
  DalRoutes dal_routes;
  /// Guards itself.
  std::unique_ptr<StubBook> stubs = std::make_unique<MemoryStubBook>();
  /// Answers requests that differ from what the library sends, as far as they can be answered.
  bool loose = false;
  /// Keeps what was asked and answered; null for none. It has a lock of its own.
  std::shared_ptr<Journal> journal{};
};

}  // namespace bvconn::sandbox
