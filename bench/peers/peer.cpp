// The program around each way to make the call: `PROGRAM URL CORE`, a core of -1 being any. It
// waits on standard input for what to do and answers each line with one of JSON, so that the rounds
// of all of them can be interleaved by bench/run:
//
//   check CASE         makes the call and compares what it read with what the server wrote
//   round CASE COUNT   makes so many calls; wall and processor time in nanoseconds, page faults
//   count CASE COUNT   makes some calls, then so many whose instructions are counted from outside
//   memory CASE        one call: what it grew by at most, and by what while its result is held
//   lasting CASE       what stays of a few calls once many small ones have followed them
#include "peers/peer.h"

#include <malloc.h>

#include <cstdlib>
#include <exception>
#include <iostream>
#include <sstream>
#include <stdexcept>

#include "common/process.h"

namespace bench {
namespace {

constexpr int kCallsBeforeCounting = 8;
constexpr int kIdleCalls = 200;
constexpr int kLargeCalls = 5;

#ifdef __clang__
const std::string kCompiler = "Clang " + std::to_string(__clang_major__);
#else
const std::string kCompiler = "GCC " + std::to_string(__GNUC__);
#endif

std::string quoted(const std::string& text) {
  return "\"" + text + "\"";
}

/// What the counting of instructions begins and ends with; it is found by its name.
[[gnu::noinline]] void counted_calls(Peer& peer, const Case& which, long count) {
  for (long made = 0; made < count; ++made) peer.call(which);
}

std::string check(Peer& peer, const Case& which) {
  peer.call(which);
  const std::string seen = peer.seen(which);
  const std::string bytes = std::to_string(envelope(which).size());
  if (seen == facts(which) || seen == bytes) return "{\"ok\": true}";
  return "{\"ok\": false, \"seen\": " + quoted(seen) + "}";
}

std::string round(Peer& peer, const Case& which, long count) {
  const Moment begin = Moment::now();
  for (long made = 0; made < count; ++made) peer.call(which);
  const Moment spent = Moment::now() - begin;
  std::ostringstream line;
  line << "{\"wall\": " << spent.wall_ns / count << ", \"cpu\": " << spent.cpu_ns / count
       << ", \"faults\": " << static_cast<double>(spent.faults) / static_cast<double>(count) << "}";
  return line.str();
}

std::string count(Peer& peer, const Case& which, long calls) {
  for (int made = 0; made < kCallsBeforeCounting; ++made) peer.call(which);
  counted_calls(peer, which, calls);
  return "{\"calls\": " + std::to_string(calls) + ", \"compiler\": " + quoted(kCompiler) + "}";
}

std::string memory(Peer& peer, const Case& which) {
  // What is made at the first call of a process is no matter of this reply.
  peer.call(kCases.front());
  ::malloc_trim(0);
  const Memory before = Memory::with_new_peak();
  peer.call(which);
  const Memory after = Memory::now();
  std::ostringstream line;
  line << "{\"peak\": " << after.peak - before.resident
       << ", \"held\": " << after.resident - before.resident
       << ", \"reply\": " << envelope(which).size() << "}";
  return line.str();
}

/// What a process that reads a large reply now and then holds more than one that never did.
std::string lasting(Peer& peer, const Case& which) {
  const auto be_idle = [&peer] {
    for (int made = 0; made < kIdleCalls; ++made) peer.call(kCases.front());
    return Memory::now().resident;
  };
  const std::int64_t before = be_idle();
  std::int64_t after = before;
  for (int times = 0; times < kLargeCalls; ++times) {
    peer.call(which);
    after = be_idle();
  }
  return "{\"stays\": " + std::to_string(after - before) + "}";
}

std::string answer(Peer& peer, const std::string& line) {
  std::istringstream words(line);
  std::string task, name;
  long calls = 1;
  words >> task >> name >> calls;
  const Case* which = find_case(name);
  if (which == nullptr) throw std::runtime_error("no such case: " + line);
  if (task == "check") return check(peer, *which);
  if (task == "round") return round(peer, *which, calls);
  if (task == "count") return count(peer, *which, calls);
  if (task == "memory") return memory(peer, *which);
  if (task == "lasting") return lasting(peer, *which);
  throw std::runtime_error("no such task: " + line);
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: " << argv[0] << " URL CORE\n";
    return 2;
  }
  try {
    bench::stay_on_core(std::atoi(argv[2]));
    const auto peer = bench::make_peer(argv[1]);
    for (std::string line; std::getline(std::cin, line);) {
      std::cout << bench::answer(*peer, line) << std::endl;
    }
    return 0;
  } catch (const std::exception& problem) {
    std::cerr << argv[0] << ": " << problem.what() << '\n';
    return 1;
  }
}
