#include <cstdio>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "bvconn/platform/error.h"
#include "bvconn/platform/tls_files.h"
#include "sandbox/command_line.h"
#include "sandbox/commands/command.h"
#include "sandbox/endpoints/endpoints.h"
#include "sandbox/endpoints/guard.h"
#include "sandbox/http/address.h"
#include "sandbox/own_files.h"
#include "sandbox/record/recording_folder.h"
#include "sandbox/record/upstream.h"
#include "sandbox/record/wire_of_exchange.h"
#include "sandbox/serving.h"
#include "sandbox/wire/wire_writer.h"

namespace bvconn::sandbox {
namespace {

/// The system's own stores take less.
constexpr std::size_t kMostTrustBytes = std::size_t{16} << 20;

struct Options {
  std::string upstream;
  std::string upstream_dal;
  std::string folder;
  std::size_t most = 10'000;
  /// As the library takes them from the environment, unless the command line says otherwise.
  TlsFiles files = tls_files();
  ServingOptions serving;
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
        end_(folder_.last_number() + options.most),
        upstream_(options.files) {}

  Reply answer(const Request& request) {
    if (auto refusal = refuse_but_clients(request)) return std::move(*refusal);
    constexpr std::string_view kDal = "/dal";
    const bool is_dal = request.path() != "/soap";
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
      "file, masked. It prints one line of JSON when it is ready."};
  app.name("bvsandbox record");
  app.add_option("--upstream", options.upstream, "The server, as https://server/soap")->required();
  app.add_option("--upstream-dal", options.upstream_dal,
                 "Its data access layer, where that does not lie beside it at dal");
  app.add_option("--ca-file", options.files.ca_file,
                 "Whom to trust behind its https, in PEM, in place of the system's store")
      ->type_name("FILE");
  app.add_option("--out", options.folder, "The folder that takes the files")->required();
  app.add_option("--most", options.most, "So many exchanges are recorded (10,000)")
      ->check(CLI::PositiveNumber);
  add_serving_options(app, options.serving,
                      "Address to listen on, 127.0.0.1 without it; who reaches another one is "
                      "passed on too");
  try {
    app.parse(argc, argv);
    return std::nullopt;
  } catch (const CLI::ParseError& error) {
    return tell(app, error);
  }
}

/// Refuses what would let others do to the server what only this user may, and what cannot be read.
void expect_usable(const Options& options) {
  if (!is_loopback(options.serving.address) && !options.files.client_cert.empty()) {
    throw std::invalid_argument("--listen " + options.serving.address +
                                " lets other machines in, and BVCONN_CLIENT_CERT would show all of "
                                "them to the server as its owner");
  }
  if (!options.files.ca_file.empty()) text_of_file(options.files.ca_file, kMostTrustBytes);
}

}  // namespace

int run_record(int argc, char** argv) {
  Options options;
  if (const auto status = read_options(argc, argv, options)) return *status;
  take_serving_options(options.serving);
  expect_usable(options);
  Recorder recorder(options);
  serve(options.serving, {}, [&](const Request& request) { return recorder.answer(request); });
  return kDoneStatus;
}

}  // namespace bvconn::sandbox
