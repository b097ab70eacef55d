#pragma once

#include <exception>
#include <optional>
#include <span>
#include <string>
#include <thread>

#include "bvconn/automation/interface.h"
#include "bvconn/observation/sightings.h"
#include "bvconn/platform/error.h"

namespace bvconn::automation::detail {

class World;

/// How a session is set up as regards the data access layer. Its objects are there in any case.
struct Switches {
  bool route = false;    ///< `UsingTorvexDAL`
  bool save = false;     ///< `UseDALSave`
  std::string disabled;  ///< the disabled methods
};

/// One call and what came of it.
struct Trial {
  Sightings seen;
  std::optional<Error> raised;
};

/// Calls an operation in a world whose platform is in force.
Trial try_call(World& world, const ClassInfo& info, const Member& operation,
               std::span<const Value> values, const Switches& switches);

/// Runs something on a thread of its own, so with a session of its own.
template <class Body>
auto on_own_thread(const Body& body) {
  decltype(body()) result;
  std::exception_ptr failure;
  std::thread thread([&] {
    try {
      result = body();
    } catch (...) {
      failure = std::current_exception();
    }
  });
  thread.join();
  if (failure) std::rethrow_exception(failure);
  return result;
}

}  // namespace bvconn::automation::detail
