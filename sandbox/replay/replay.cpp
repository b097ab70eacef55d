#include <CLI/CLI.hpp>
#include <cstdint>
#include <exception>
#include <string>

#include "sandbox/commands/command.h"
#include "sandbox/endpoints/endpoints.h"
#include "sandbox/replay/player.h"
#include "sandbox/serving.h"

namespace bvconn::sandbox {
namespace {

struct Options {
  std::string folder;
  std::uint16_t port = 0;
  bool in_order = false;
  bool until_eof = false;
  bool verbose = false;
};

Reply answer(const RequestReader& reader, Player& player, const Request& request) {
  const std::string_view path = request.path();
  if (path != "/soap" && !path.starts_with("/dal/")) {
    return text_reply(404, "There is nothing here. POST to /soap or /dal/{Object}/{Operation}.\n");
  }
  if (request.method != "POST") return method_not_allowed(request, "POST");
  try {
    return player.answer(reader.read(request));
  } catch (const std::exception& error) {
    return text_reply(500, std::string("The replay failed: ") + error.what() + "\n");
  }
}

}  // namespace

int run_replay(int argc, char** argv) {
  CLI::App app{
      "Answers from a recording, a folder of files *.wire, and asks nobody else. It listens on\n"
      "127.0.0.1 and prints one line of JSON when it is ready."};
  app.name("bvsandbox replay");
  Options options;
  app.add_option("FOLDER", options.folder, "The recording")->required();
  app.add_option("--port", options.port, "Port to listen on; 0 takes a free one (the default)");
  app.add_flag("--in-order", options.in_order, "Requests have to come as they were recorded");
  app.add_flag("--until-eof", options.until_eof, "End when standard input does");
  app.add_flag("--verbose", options.verbose, "Write a line for each request to standard error");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kDoneStatus : kUsageStatus;
  }
  const RequestReader reader;
  Player player(load_recording(options.folder, reader),
                options.in_order ? PlayOrder::kRecorded : PlayOrder::kAny);
  Server server({.port = options.port}, {}, [&](const Request& request) {
    Reply reply = answer(reader, player, request);
    if (options.verbose) tell_exchange(request, reply);
    return reply;
  });
  serve(server, options.until_eof);
  return kDoneStatus;
}

}  // namespace bvconn::sandbox
