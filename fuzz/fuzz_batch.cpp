// Runs the input as the lines of a batch, on a world that answers every call with one reply. Each
// line has one answer in JSON with the line's own identifier, and nothing fails but by an error of
// the library's; the batch goes on after whatever a line was.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "batch.h"
#include "bvconn/core/session_state.h"
#include "fuzzing.h"
#include "memory/quiet_world.h"

namespace {

using namespace bvconn;  // NOLINT(google-build-using-namespace): the interface under test
using fuzz::Choices;
using fuzz::require;
using nlohmann::json;

constexpr std::size_t kLinesMax = 16;
constexpr std::string_view kGood = R"({"id":"last","get":"BVMethods.GetInvoice"})";
constexpr std::string_view kGoodAnswer = R"({"id":"last","result":"getInvoice"})";

constexpr std::string_view kReplies[] = {
    "<s:Envelope xmlns:s='http://schemas.xmlsoap.org/soap/envelope/'><s:Body><r>"
    "<return><GID>G-1</GID><Name>N</Name></return><second>2</second></r></s:Body></s:Envelope>",
    "<s:Envelope xmlns:s='http://schemas.xmlsoap.org/soap/envelope/'><s:Body><r>"
    "<return>true</return></r></s:Body></s:Envelope>",
    "<s:Envelope xmlns:s='http://schemas.xmlsoap.org/soap/envelope/'><s:Body><r/></s:Body>"
    "</s:Envelope>",
    "<s:Envelope xmlns:s='http://schemas.xmlsoap.org/soap/envelope/'><s:Body><s:Fault>"
    "<faultcode>10041</faultcode><faultstring>the server's words</faultstring></s:Fault></s:Body>"
    "</s:Envelope>",
    "not XML",
};

/// What an answer says: exactly one of these, or an event.
void check_answer(const std::string& line, std::string_view request) {
  const json answer = json::parse(line, nullptr, false);
  require(answer.is_object(), "an answer that is no object", line);
  require(answer.contains("id"), "an answer without an identifier", line);
  int kinds = 0;
  for (const char* kind : {"result", "error", "usage", "event"}) {
    kinds += answer.contains(kind) ? 1 : 0;
  }
  require(kinds == 1, "an answer of no kind, or of several", line);
  const json asked = json::parse(request, nullptr, false);
  if (asked.is_object() && !answer.contains("usage")) {
    require(answer["id"] == asked.value("id", json()), "an answer to another line", line);
  }
  if (answer.contains("error")) {
    require(answer["error"]["number"] != -1, "something else than an error of the library", line);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Choices choices(data, size);
  const std::size_t reply =
      !choices.done() && data[0] >= '0' && data[0] <= '9' ? choices.below(std::size(kReplies)) : 0;
  test::QuietWorld world(kReplies[reply]);
  session().KeepExchanges(4);
  std::vector<std::string> lines;
  tool::Batch batch([&](std::string_view line) { lines.emplace_back(line); });
  for (std::size_t count = 0; count < kLinesMax && !choices.done(); ++count) {
    const std::string_view request = choices.line();
    lines.clear();
    batch.run(request);
    const bool is_blank = request.find_first_not_of(" \t\r") == std::string_view::npos;
    require(lines.empty() == is_blank, "a line without an answer, or an answer without a line",
            request);
    for (const std::string& line : lines) check_answer(line, request);
  }
  lines.clear();
  batch.run(kGood);
  require(lines.size() == 1 && lines[0] == kGoodAnswer, "the good line fails afterwards");
  require(batch.status() != tool::kFailed, "an internal failure");
  return 0;
}
