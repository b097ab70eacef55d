#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace bvconn::test {

/// What this process holds of the system's.
struct Held {
  std::size_t descriptors = 0;
  std::size_t threads = 0;

  friend bool operator==(const Held&, const Held&) = default;
};
Held held_now();

/// Waits until the process holds so much again, for other threads take their time to notice the end
/// of a connection; gives what it holds after all.
Held held_again(const Held& before);

/// The bytes of the process's memory that are in use.
std::size_t resident_memory();

/// By how many bytes the resident memory of the process rose at its peak while `action` ran. What
/// was freed before, but kept by the allocator, is given back to the system first, so that it
/// cannot hide anything.
std::size_t peak_growth(const std::function<void()>& action);

/// A file that nobody may open, as long as this object lives.
class FileCanary {
 public:
  explicit FileCanary(const std::string& path);
  ~FileCanary();
  FileCanary(const FileCanary&) = delete;
  FileCanary& operator=(const FileCanary&) = delete;

  /// Whether somebody opened it, since it was asked last.
  bool was_opened() const;

 private:
  int watch_ = -1;
};

}  // namespace bvconn::test
