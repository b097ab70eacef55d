#include "common/process.h"

#include <sched.h>
#include <sys/resource.h>

#include <ctime>
#include <fstream>
#include <stdexcept>
#include <string>

namespace bench {
namespace {

std::int64_t nanoseconds(clockid_t clock) {
  timespec time{};
  ::clock_gettime(clock, &time);
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

}  // namespace

void stay_on_core(int core) {
  if (core < 0) return;
  cpu_set_t cores;
  CPU_ZERO(&cores);
  CPU_SET(static_cast<unsigned>(core), &cores);
  if (::sched_setaffinity(0, sizeof(cores), &cores) != 0) {
    throw std::runtime_error("core " + std::to_string(core) + " is not to be had");
  }
}

Moment Moment::now() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return {.wall_ns = nanoseconds(CLOCK_MONOTONIC),
          .cpu_ns = nanoseconds(CLOCK_PROCESS_CPUTIME_ID),
          .faults = usage.ru_minflt + usage.ru_majflt};
}

Moment operator-(const Moment& end, const Moment& begin) {
  return {.wall_ns = end.wall_ns - begin.wall_ns,
          .cpu_ns = end.cpu_ns - begin.cpu_ns,
          .faults = end.faults - begin.faults};
}

Memory Memory::now() {
  Memory memory;
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    std::int64_t* const field = word == "VmRSS:"   ? &memory.resident
                                : word == "VmHWM:" ? &memory.peak
                                                   : nullptr;
    if (field != nullptr && status >> *field) *field *= 1024;
  }
  return memory;
}

Memory Memory::with_new_peak() {
  // What is written is the kernel's word for it.
  std::ofstream("/proc/self/clear_refs") << 5;
  return now();
}

}  // namespace bench
