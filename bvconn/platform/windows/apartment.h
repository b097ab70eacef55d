#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

struct IUnknown;

namespace bvconn::detail {

/// The apartment of one thread, kept open while objects of other components live in it: they are
/// made, called and released on that thread alone.
///
/// Who lets it go last on its own thread closes it. From then on this library stays loaded until
/// the process ends, since the system unloads libraries where the last apartment is closed, and
/// that may be at the end of a thread of which this one keeps a record.
class Apartment {
 public:
  /// That of the calling thread, which gets one of its own where it has none.
  static std::shared_ptr<Apartment> of_thread();
  ~Apartment();
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;

  bool is_here() const noexcept;
  /// At once on the apartment's own thread; on another it is left to `release_left`.
  void release(IUnknown* object) noexcept;
  /// Releases what other threads have let go of. Only on the apartment's own thread.
  void release_left() noexcept;

 private:
  Apartment();

  unsigned long thread_;
  // While it is open, no other thread is given the number.
  void* thread_handle_;
  bool is_counted_ = false;
  std::mutex mutex_;
  std::vector<IUnknown*> left_;
};

}  // namespace bvconn::detail
