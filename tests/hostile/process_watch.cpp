#include "hostile/process_watch.h"

#include <malloc.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace bvconn::test {
namespace {

std::size_t entries_of(const char* folder) {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

// A value of the process's own status, in bytes.
std::size_t memory_of_process(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name + ":")) return std::stoull(line.substr(name.size() + 1)) << 10U;
  }
  throw std::runtime_error("the system does not tell " + name);
}

}  // namespace

Held held_now() {
  return {.descriptors = entries_of("/proc/self/fd"), .threads = entries_of("/proc/self/task")};
}

Held held_again(const Held& before) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
  Held held = held_now();
  while (held != before && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    held = held_now();
  }
  return held;
}

std::size_t resident_memory() {
  return memory_of_process("VmRSS");
}

std::size_t peak_growth(const std::function<void()>& action) {
  // Large blocks come from the system and go back to it, whatever was freed before.
  static const int fixed = mallopt(M_MMAP_THRESHOLD, 128 << 10);
  if (fixed != 1) throw std::runtime_error("the allocator cannot be set up");
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << "5";
  const std::size_t before = resident_memory();
  action();
  const std::size_t peak = memory_of_process("VmHWM");
  return peak > before ? peak - before : 0;
}

FileCanary::FileCanary(const std::string& path)
    : watch_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
  std::ofstream(path) << "canary-words";
  if (watch_ < 0 || ::inotify_add_watch(watch_, path.c_str(), IN_OPEN) < 0) {
    throw std::runtime_error("a file cannot be watched");
  }
}

FileCanary::~FileCanary() {
  ::close(watch_);
}

bool FileCanary::was_opened() const {
  std::array<char, 4096> events;
  return ::read(watch_, events.data(), events.size()) > 0;
}

}  // namespace bvconn::test
