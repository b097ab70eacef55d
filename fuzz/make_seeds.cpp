// Makes the inputs that fuzzing begins with: make_seeds FOLDER TESTS. From the wire files come
// requests, replies and calls, from the hostile files whole replies of HTTP. Each target has a
// folder of its own; a file is named by its contents, so that none is there twice.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

#include "bvconn/platform/error.h"
#include "hostile/hostile_bytes.h"
#include "hostile/hostile_file.h"
#include "sandbox/wire/wire_file.h"

namespace {

namespace fs = std::filesystem;
using namespace bvconn::test;  // NOLINT(google-build-using-namespace): the tests' own files
using bvconn::wire::WireCase;
using bvconn::wire::WireStep;

// Larger ones slow every round down and reach nothing that smaller ones do not.
constexpr std::size_t kSeedMax = 8'192;
constexpr std::string_view kTurnOnDal =
    "{\"call\":\"BVConnectorObject.InitTorvexDAL\",\"args\":{\"dal_server_url\":\"d\"}}\n"
    "{\"call\":\"BVConnectorObject.UseTorvexDAL\"}\n";
constexpr std::string_view kHeadersEnd = "\r\n\r\n";

const std::string kGood = response_around("<return>good</return>");
const Holes kHoles{{"canary", "http://127.0.0.1:9/"},
                   {"canary host", "127.0.0.1:9"},
                   {"canary file", "/nowhere/canary"},
                   {"host", "127.0.0.1:9"},
                   {"port", "9"},
                   {"soap", "http://schemas.xmlsoap.org/soap/envelope/"},
                   {"good", kGood},
                   {"good length", std::to_string(kGood.size())}};

std::string contents(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

class Seeds {
 public:
  explicit Seeds(fs::path folder) : folder_(std::move(folder)) {}

  void add(const std::string& target, const std::string& input) const {
    if (input.size() > kSeedMax) return;
    const fs::path folder = folder_ / target;
    fs::create_directories(folder);
    const std::size_t name = std::hash<std::string>{}(input);
    std::ofstream(folder / std::to_string(name), std::ios::binary) << input;
  }

  void add_document(const std::string& text) const {
    add("fuzz_soap_envelope", text);
    add("fuzz_xml_reader", text);
  }

 private:
  fs::path folder_;
};

std::string replaced(std::string text, std::string_view what, std::string_view by) {
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
    text.replace(at, what.size(), by);
  }
  return text;
}

/// A request of the wire files as a server gets it.
std::string request_text(const WireStep& step) {
  if (step.text) return *step.text;
  const std::string method =
      replaced(*step.request, "{soap}",
               "SOAP-ENV:encodingStyle=\"http://schemas.xmlsoap.org/soap/encoding/\"");
  return "<SOAP-ENV:Envelope xmlns:SOAP-ENV=\"http://schemas.xmlsoap.org/soap/envelope/\" "
         "xmlns:SOAP-ENC=\"http://schemas.xmlsoap.org/soap/encoding/\" "
         "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
         "xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"><SOAP-ENV:Header><userID "
         "xsi:type=\"xsd:string\">S-1</userID></SOAP-ENV:Header><SOAP-ENV:Body>" +
         method + "</SOAP-ENV:Body></SOAP-ENV:Envelope>";
}

void add_request(const Seeds& seeds, const WireStep& step) {
  const std::string text = request_text(step);
  seeds.add_document(text);
  if (!step.soap_action) return;
  seeds.add("fuzz_sandbox_request", "/soap\n" + *step.soap_action + "\n" + text);
  seeds.add("fuzz_sandbox_http",
            "POST /soap HTTP/1.1\r\nHost: h\r\nSOAPAction: \"" + *step.soap_action +
                "\"\r\nContent-Length: " + std::to_string(text.size()) + "\r\n\r\n" + text);
}

/// `Object.Operation("text", true, missing)` as a path and a body.
void add_dal_call(const Seeds& seeds, const std::string& line, const WireStep& step) {
  const auto dot = line.find('.');
  const auto open = line.find('(');
  const auto close = line.rfind(')');
  if (dot == std::string::npos || open == std::string::npos || close == std::string::npos) return;
  std::string arguments = replaced(line.substr(open + 1, close - open - 1), "missing", "null");
  if (step.request || step.text) {
    const std::string quoted = "\"" + replaced(request_text(step), "\"", "\\\"") + "\"";
    arguments = replaced(arguments, "{request}", quoted);
  }
  seeds.add("fuzz_sandbox_request", "/dal/" + line.substr(0, dot) + "/" +
                                        line.substr(dot + 1, open - dot - 1) +
                                        "\n{\"arguments\":[" + arguments + "]}");
}

void add_wire_case(const Seeds& seeds, const WireCase& wire) {
  std::string lines;
  for (const WireStep& step : wire.steps) {
    const std::string arguments = step.arguments.empty() ? "{}" : step.arguments;
    lines += "{\"id\":1,\"call\":\"" + step.member + "\",\"args\":" + arguments + "}\n";
    if (step.request || step.text) add_request(seeds, step);
    for (const std::string& line : step.dal) add_dal_call(seeds, line, step);
    if (step.reply) seeds.add_document(response_around(*step.reply));
    if (step.raw) seeds.add_document(*step.raw);
  }
  seeds.add("fuzz_batch", lines);
  seeds.add("fuzz_batch", std::string(kTurnOnDal) + lines);
}

void add_hostile_case(const Seeds& seeds, const HostileCase& hostile) {
  std::string reply;
  for (const Step& step : answer_of(hostile, HostileStep::Moment::kAsked, kHoles)) {
    if (step.kind == Step::Kind::kSend) reply += step.bytes;
  }
  if (reply.empty()) return;
  for (const char* choice : {"P", "Q", "D", "E"}) seeds.add("fuzz_http_reply", choice + reply);
  const auto end = reply.find(kHeadersEnd);
  if (end == std::string::npos) return;
  const std::string body = reply.substr(end + kHeadersEnd.size());
  if (reply.find("gzip") == std::string::npos) {
    seeds.add_document(body);
  } else {
    seeds.add("fuzz_gzip", std::string("\1\0\0\3abc", 7) + body);
  }
}

/// A case that tells what its runner alone knows is passed over.
void add_hostile_file(const Seeds& seeds, const fs::path& file) {
  for (const HostileCase& hostile : read_hostile_file(contents(file)).cases) {
    try {
      add_hostile_case(seeds, hostile);
    } catch (const std::runtime_error& error) {
      std::fprintf(stderr, "%s:%d: passed over: %s\n", file.c_str(), hostile.line, error.what());
    }
  }
}

void make(const Seeds& seeds, const fs::path& tests) {
  for (const auto& entry : fs::recursive_directory_iterator(tests)) {
    const std::string extension = entry.path().extension();
    if (extension == ".wire") {
      for (const auto& each : bvconn::wire::read_wire_file(contents(entry.path())).cases) {
        add_wire_case(seeds, each);
      }
    } else if (extension == ".hostile") {
      add_hostile_file(seeds, entry.path());
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("usage: make_seeds FOLDER TESTS\n", stderr);
    return 2;
  }
  try {
    make(Seeds(argv[1]), argv[2]);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_seeds: %s\n", error.what());
    return 1;
  }
}
