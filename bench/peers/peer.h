#pragma once

#include <functional>
#include <memory>
#include <string>

#include "common/replies.h"

/// One program for each way to make the call. It waits on standard input for what to do, and
/// answers each line with one of JSON, so that the rounds of all of them can be interleaved by
/// `bench/run`:
///
///   check CASE         makes the call and compares what it read with what the server wrote
///   round CASE COUNT   makes so many calls; wall and processor time in nanoseconds, page faults
///   count CASE COUNT   makes some calls, then so many whose instructions are counted from outside
///   memory CASE        one call: what it grew by at most, and by what while its result is held
namespace bench {

class Peer {
 public:
  virtual ~Peer() = default;
  /// Makes a call, up to where a value can be taken from each field of the reply. The result of the
  /// last call may be held until the next.
  virtual void call(const Case& which) = 0;
  /// What the last call gave, as `facts` has it; for a peer that reads no XML the bytes of the
  /// body. Takes from the result what an application would take.
  virtual std::string seen(const Case& which) = 0;
};

using MakePeer = std::function<std::unique_ptr<Peer>(const std::string& url)>;

/// The program: `peer URL CORE`, the URL without a path; a core of -1 is any.
int run_peer(int argc, char** argv, const MakePeer& make);

/// The URL of a case.
std::string url_of(const std::string& url, const Case& which);

}  // namespace bench
