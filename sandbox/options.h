#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sandbox/http/server.h"
#include "sandbox/journal/journal.h"
#include "sandbox/serving.h"

namespace bvconn::sandbox {

struct Options {
  ServingOptions serving;
  /// The word that whoever administers it has to know; "" where anybody may.
  std::string admin_token;
  std::string database = ":memory:";
  std::optional<std::uint64_t> seed;
  std::string disabled_services;
  /// Files with faults that are in force from the start.
  std::vector<std::string> fault_files;
  /// By which names it may be administered besides those of the loopback address.
  std::vector<std::string> allowed_hosts;
  /// Answers what differs from the library's requests, too.
  bool loose = false;
  JournalLimits journal;
  Limits limits;
};

/// Reads the command line. Where it asks for help, or cannot be understood, this says so to the
/// user and gives the exit status instead.
std::optional<int> read_options(int argc, char** argv, Options& options);

/// Why a text cannot be the disabled methods that the data access layer tells; "" where it can.
std::string trouble_with_disabled(const std::string& text);

}  // namespace bvconn::sandbox
