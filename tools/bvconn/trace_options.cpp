#include "trace_options.h"

#include <charconv>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string_view>
#include <utility>

#include "bvconn/platform/platform.h"
#include "status.h"
#include "system.h"
#include "trace_platform.h"

namespace bvconn::tool {
namespace {

bool is_mask(std::string_view text) {
  const bool hex = text.starts_with("0x") || text.starts_with("0X");
  if (hex) text.remove_prefix(2);
  std::uint32_t mask = 0;
  const auto [end, error] =
      std::from_chars(text.data(), text.data() + text.size(), mask, hex ? 16 : 10);
  return error == std::errc() && end == text.data() + text.size();
}

/// A trace holds what the application sends: the file is its owner's alone.
std::shared_ptr<std::ostream> open_trace(const std::string& name) {
  if (name == "-") return {&std::cerr, [](std::ostream*) {}};
  const int code = make_private_file(name);
  auto stream = std::make_shared<std::ofstream>(std::filesystem::path(name), std::ios::binary);
  if (code != 0 || !stream->is_open()) {
    throw UsageError("--trace: cannot write " + name +
                     (code != 0 ? std::string(": ") + std::strerror(code) : ""));
  }
  return stream;
}

}  // namespace

void add_trace_options(CLI::App& command, TraceOptions& options) {
  command
      .add_option("--trace", options.file,
                  "Write what the library does to FILE, as lines of JSON (- is standard error)")
      ->type_name("FILE");
  command.add_option("--mask", options.mask, "Mask of the log levels in force (decimal or 0x...)")
      ->type_name("N");
  command.add_flag("--trace-secrets", options.shows_secrets, "Show passwords in the trace");
}

void install_trace(TraceOptions& options) {
  if (!options.mask.empty()) {
    if (!is_mask(options.mask)) throw UsageError("--mask: a number is expected");
    set_variable("BVCONN_LOG_MASK", options.mask);
  }
  if (options.file.empty() && !options.reply) return;
  platform::Platform platform = platform::system_platform();
  if (options.reply) platform = tapped(std::move(platform), options.reply);
  if (!options.file.empty()) {
    options.stream = open_trace(options.file);
    auto trace = std::make_shared<Trace>(options.stream, options.shows_secrets);
    platform = traced(std::move(platform), std::move(trace));
  }
  platform::install(std::move(platform));
}

int traced_status(const TraceOptions& options, int status, std::ostream& err) {
  if (!options.stream || *options.stream) return status;
  err << "bvconn: the trace cannot be written: " << options.file << '\n';
  return status == kDone ? kFailed : status;
}

}  // namespace bvconn::tool
