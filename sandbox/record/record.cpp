#include <CLI/CLI.hpp>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <optional>
#include <string>

#include "bvconn/platform/error.h"
#include "sandbox/commands/command.h"
#include "sandbox/endpoints/endpoints.h"
#include "sandbox/record/recording_folder.h"
#include "sandbox/record/upstream.h"
#include "sandbox/record/wire_of_exchange.h"
#include "sandbox/serving.h"
#include "sandbox/wire/wire_writer.h"

namespace bvconn::sandbox {
namespace {

struct Options {
  std::string upstream;
  std::string upstream_dal;
  std::string folder;
  std::size_t most = 10'000;
  std::uint16_t port = 0;
  bool until_eof = false;
  bool verbose = false;
};

void warn(const std::string& text) {
  std::fputs(("bvsandbox: " + text + "\n").c_str(), stderr);
}

/// Passes requests on and writes down what comes of them. Used by several threads at once.
class Recorder {
 public:
  explicit Recorder(const Options& options)
      : addresses_(upstream_addresses(options.upstream, options.upstream_dal)),
        folder_(options.folder),
        end_(folder_.last_number() + options.most) {}

  Reply answer(const Request& request) {
    const std::string_view path = request.path();
    constexpr std::string_view kDal = "/dal";
    const bool is_dal = path.starts_with("/dal/");
    if (path != "/soap" && !is_dal) {
      return text_reply(404,
                        "There is nothing here. POST to /soap or /dal/{Object}/{Operation}.\n");
    }
    if (request.method != "POST") return method_not_allowed(request, "POST");
    const std::string url =
        is_dal ? addresses_.dal + request.target.substr(kDal.size()) : addresses_.soap;
    const std::size_t number = folder_.next_number();
    std::optional<Reply> reply;
    try {
      reply = upstream_.send(url, request);
    } catch (const Error& error) {
      warn("exchange " + std::to_string(number) + " has no reply: " + error.description);
      return text_reply(502, "The server gave no reply: " + error.description + "\n");
    }
    if (number <= end_) record(number, url, request, *reply);
    if (number == end_) {
      warn("that was the last exchange to be recorded; the others are passed on alone");
    }
    return *reply;
  }

 private:
  void record(std::size_t number, const std::string& url, const Request& request,
              const Reply& reply) const {
    try {
      const wire::WireStep step = step_of_exchange(url, request, reply, reader_);
      const std::string claim = step.member + ", exchange " + std::to_string(number);
      folder_.write(number, step.member, wire::wire_case_text({.claim = claim, .steps = {step}}));
    } catch (const std::exception& error) {
      warn("exchange " + std::to_string(number) + " is not recorded: " + error.what());
    }
  }

  const RequestReader reader_;
  const UpstreamAddresses addresses_;
  RecordingFolder folder_;
  const std::size_t end_;
  Upstream upstream_;
};

std::optional<int> read_options(int argc, char** argv, Options& options) {
  CLI::App app{
      "Passes the requests of an application on to its server, and writes each exchange into a\n"
      "file, masked. It listens on 127.0.0.1 and prints one line of JSON when it is ready."};
  app.name("bvsandbox record");
  app.add_option("--upstream", options.upstream, "The server, as https://server/soap")->required();
  app.add_option("--upstream-dal", options.upstream_dal,
                 "Its data access layer, where that does not lie beside it at dal");
  app.add_option("--out", options.folder, "The folder that takes the files")->required();
  app.add_option("--most", options.most, "So many exchanges are recorded (10,000)")
      ->check(CLI::PositiveNumber);
  app.add_option("--port", options.port, "Port to listen on; 0 takes a free one (the default)");
  app.add_flag("--until-eof", options.until_eof, "End when standard input does");
  app.add_flag("--verbose", options.verbose, "Write a line for each request to standard error");
  try {
    app.parse(argc, argv);
    return std::nullopt;
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kDoneStatus : kUsageStatus;
  }
}

}  // namespace

int run_record(int argc, char** argv) {
  Options options;
  if (const auto status = read_options(argc, argv, options)) return *status;
  Recorder recorder(options);
  Server server({.port = options.port}, {}, [&](const Request& request) {
    Reply reply = recorder.answer(request);
    if (options.verbose) tell_exchange(request, reply);
    return reply;
  });
  serve(server, options.until_eof);
  return kDoneStatus;
}

}  // namespace bvconn::sandbox
