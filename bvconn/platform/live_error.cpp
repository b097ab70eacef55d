#include "bvconn/platform/live_error.h"

#include <new>
#if __has_include(<cxxabi.h>)
#include <cxxabi.h>
#endif

#include "bvconn/platform/error_numbers.h"

namespace bvconn {
namespace {

constexpr const char* kSource = "BVConn";

Error described_error() {
  try {
    throw;
  } catch (const Error& error) {
    return error;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    return Error(error_numbers::kFailed, kSource, error.what());
#ifdef __GLIBCXX__
  } catch (const abi::__forced_unwind&) {
    throw;
#endif
  } catch (...) {
    return Error(error_numbers::kFailed, kSource, "an exception that says nothing of itself");
  }
}

}  // namespace

Error live_error() {
  try {
    return described_error();
  } catch (const std::bad_alloc&) {
    // Thrown, or met while the error was described. Both texts are short enough to need no memory.
    return Error(error_numbers::kOutOfMemory, kSource, "out of memory");
  }
}

}  // namespace bvconn
