#include <exception>
#include <string>
#include <utility>

#include "sandbox/command_line.h"
#include "sandbox/commands/command.h"
#include "sandbox/endpoints/endpoints.h"
#include "sandbox/endpoints/guard.h"
#include "sandbox/replay/player.h"
#include "sandbox/serving.h"

namespace bvconn::sandbox {
namespace {

struct Options {
  std::string folder;
  ServingOptions serving;
  bool in_order = false;
};

Reply answer(const RequestReader& reader, Player& player, const Request& request) {
  if (auto refusal = refuse_but_clients(request)) return std::move(*refusal);
  try {
    return player.answer(reader.read(request));
  } catch (const std::exception& error) {
    return text_reply(500, std::string("The replay failed: ") + error.what() + "\n");
  }
}

}  // namespace

int run_replay(int argc, char** argv) {
  CLI::App app{
      "Answers from a recording, a folder of files *.wire, and asks nobody else. It prints one "
      "line\n"
      "of JSON when it is ready."};
  app.name("bvsandbox replay");
  Options options;
  app.add_option("FOLDER", options.folder, "The recording")->required();
  app.add_flag("--in-order", options.in_order, "Requests have to come as they were recorded");
  add_serving_options(app, options.serving,
                      "Address to listen on, 127.0.0.1 without it; who reaches another one gets "
                      "what was recorded");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return tell(app, error);
  }
  take_serving_options(options.serving);
  const RequestReader reader;
  Player player(load_recording(options.folder, reader),
                options.in_order ? PlayOrder::kRecorded : PlayOrder::kAny);
  serve(options.serving, {},
        [&](const Request& request) { return answer(reader, player, request); });
  return kDoneStatus;
}

}  // namespace bvconn::sandbox
