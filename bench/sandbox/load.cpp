// Sends ready requests to servers on the loopback address over connections that are kept, as fast
// as they are answered, each connection one at a time. It answers each line with one of JSON, until
// its standard input ends:
//
//   open CONNECTIONS PORT…           opens them all, by turns to the ports
//   ask REQUESTS MILLISECONDS FILE…  sends the files by turns until so many are sent or so long is
//   over close                            closes all
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "common/process.h"
#include "sandbox/connections.h"

namespace bench {
namespace {

/// As many connections as the system lets a process have.
void take_all_descriptors() {
  rlimit files{};
  ::getrlimit(RLIMIT_NOFILE, &files);
  files.rlim_cur = files.rlim_max;
  ::setrlimit(RLIMIT_NOFILE, &files);
}

const std::string& contents(const std::string& file) {
  static std::map<std::string, std::string> read;
  std::string& text = read[file];
  if (text.empty()) {
    std::ifstream stream(file, std::ios::binary);
    text.assign(std::istreambuf_iterator<char>(stream), {});
    if (text.empty()) throw std::runtime_error("there is no request in " + file);
  }
  return text;
}

std::int64_t at(std::vector<std::int64_t>& sorted, std::size_t hundredth) {
  if (sorted.empty()) return 0;
  return sorted[std::min(sorted.size() - 1, sorted.size() * hundredth / 100)];
}

std::string ask(Connections& connections, std::istringstream& words) {
  std::size_t requests = 0;
  std::int64_t milliseconds = 0;
  words >> requests >> milliseconds;
  std::vector<std::string> texts;
  for (std::string file; words >> file;) texts.push_back(contents(file));
  if (texts.empty()) throw std::runtime_error("ask REQUESTS MILLISECONDS FILE…");
  const Moment begin = Moment::now();
  Answers answers = connections.ask(texts, requests, std::chrono::milliseconds(milliseconds));
  const Moment took = Moment::now() - begin;
  std::sort(answers.times_ns.begin(), answers.times_ns.end());
  std::ostringstream json;
  json << R"({"answered":)" << answers.times_ns.size() << R"(,"good":)" << answers.good
       << R"(,"lost":)" << answers.lost << R"(,"wall":)" << took.wall_ns << R"(,"cpu":)"
       << took.cpu_ns << R"(,"median":)" << at(answers.times_ns, 50) << R"(,"slow":)"
       << at(answers.times_ns, 99) << "}";
  return json.str();
}

std::string done(Connections& connections, const std::string& line) {
  std::istringstream words(line);
  std::string command;
  words >> command;
  if (command == "ask") return ask(connections, words);
  if (command == "open") {
    std::size_t count = 0;
    words >> count;
    std::vector<std::uint16_t> ports;
    for (std::uint16_t port = 0; words >> port;) ports.push_back(port);
    if (ports.empty()) throw std::runtime_error("open CONNECTIONS PORT…");
    connections.open(count, ports);
  } else if (command == "close") {
    connections.close();
  } else {
    throw std::runtime_error("there is no command " + command);
  }
  return R"({"open":)" + std::to_string(connections.count()) + "}";
}

}  // namespace
}  // namespace bench

int main() {
  try {
    bench::take_all_descriptors();
    bench::Connections connections;
    for (std::string line; std::getline(std::cin, line);) {
      std::cout << bench::done(connections, line) << std::endl;
    }
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "load: %s\n", error.what());
    return 1;
  }
}
