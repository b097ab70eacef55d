#pragma once

#include <memory>
#include <mutex>

#include "sandbox/contract/contract.h"
#include "sandbox/contract/dal_routes.h"
#include "sandbox/store/store.h"
#include "sandbox/stubs/stub.h"

namespace bvconn::sandbox {

class Journal;

/// What all endpoints and operations share. Requests are read and answered on several threads:
/// whoever uses the store holds the mutex; the rest never changes.
struct Sandbox {
  Store store;
  Contract contract;
  DalRoutes dal_routes;
  /// Guards itself.
  std::unique_ptr<StubBook> stubs = std::make_unique<MemoryStubBook>();
  std::mutex mutex{};
  /// Answers requests that differ from what the library sends, as far as they can be answered.
  bool loose = false;
  /// Keeps what was asked and answered; null for none. It has a lock of its own.
  std::shared_ptr<Journal> journal{};
};

}  // namespace bvconn::sandbox
