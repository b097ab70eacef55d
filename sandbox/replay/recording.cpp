#include "sandbox/replay/recording.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "sandbox/replay/dal_call.h"
#include "sandbox/wire/wire_text.h"

namespace bvconn::sandbox {
namespace {

namespace fs = std::filesystem;
using wire::WireFile;
using wire::WireStep;

[[noreturn]] void refuse_recording(const fs::path& path, const std::string& why) {
  throw std::runtime_error("'" + path.string() + "' " + why);
}

std::vector<fs::path> files_below(const fs::path& folder) {
  std::vector<fs::path> files;
  std::error_code error;
  if (!fs::is_directory(folder, error)) refuse_recording(folder, "is no folder");
  fs::recursive_directory_iterator entry(folder, error);
  for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
    if (entry->path().extension() == ".wire" && entry->is_regular_file(error)) {
      files.push_back(entry->path());
    }
  }
  if (error) refuse_recording(folder, "cannot be read: " + error.message());
  std::sort(files.begin(), files.end());
  return files;
}

std::string bytes_of(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(stream), {}};
  if (!stream.is_open() || stream.bad()) refuse_recording(path, "cannot be read");
  return bytes;
}

bool is_replayed(const WireStep& step) {
  return (step.url || !step.dal.empty()) && !step.broken;
}

int status_of(const WireStep& step) {
  if (!step.status) return step.fault && step.dal.empty() ? 500 : 200;
  int status = 0;
  const char* const end = step.status->data() + step.status->size();
  const auto read = std::from_chars(step.status->data(), end, status);
  if (read.ec != std::errc() || read.ptr != end || status < 200 || status > 599) {
    throw std::runtime_error("'" + *step.status + "' is no status of a reply");
  }
  return status;
}

class Loader {
 public:
  Loader(fs::path folder, const RequestReader& reader)
      : folder_(std::move(folder)), reader_(reader) {}

  std::vector<Recorded> load() {
    for (const fs::path& path : files_below(folder_)) add_file(path);
    if (recorded_.empty()) refuse_recording(folder_, "holds no recorded exchange");
    return std::move(recorded_);
  }

 private:
  void add_file(const fs::path& path) {
    std::error_code error;
    bytes_ += fs::file_size(path, error);
    if (error) refuse_recording(path, "cannot be read: " + error.message());
    if (bytes_ > kMostRecordedBytes) {
      refuse_recording(folder_, "holds more than " + std::to_string(kMostRecordedBytes >> 20U) +
                                    " MiB, which is more than can be replayed");
    }
    const WireFile file = wire::read_wire_file(bytes_of(path));
    if (!file.problems.empty()) refuse_recording(path, "is no recording: " + file.problems.front());
    for (const auto& each : file.cases) {
      for (const WireStep& step : each.steps) {
        if (is_replayed(step)) add(path, step);
      }
    }
  }

  void add(const fs::path& path, const WireStep& step) try {
    if (recorded_.size() == kMostRecorded) {
      throw std::runtime_error("there are more than " + std::to_string(kMostRecorded) +
                               " exchanges");
    }
    recorded_.push_back(
        {.place = path.lexically_relative(folder_).string() + ":" + std::to_string(step.line),
         .request = reader_.read(http_request_of(step)),
         .reply = reply_of(step)});
  } catch (const std::runtime_error& error) {
    refuse_recording(path,
                     "is no recording: line " + std::to_string(step.line) + ": " + error.what());
  }

  fs::path folder_;
  const RequestReader& reader_;
  std::vector<Recorded> recorded_;
  std::uintmax_t bytes_ = 0;
};

}  // namespace

Request http_request_of(const WireStep& step) {
  Request request{.method = "POST", .target = "/soap", .headers = {}, .body = {}};
  if (!step.dal.empty()) {
    auto call = dal_call_of(step.dal.front(), wire::request_text(step));
    if (!call) throw std::runtime_error("'" + step.dal.front() + "' is no call");
    request.target = "/dal/" + call->object + "/" + call->operation;
    request.headers = {{.name = "Content-Type", .value = "application/json"}};
    request.body = std::move(call->body);
    return request;
  }
  request.headers = {{.name = "Content-Type", .value = "text/xml"}};
  const std::string action = step.soap_action.value_or("none");
  if (action != "none") {
    request.headers.push_back({.name = "SOAPAction", .value = "\"" + action + "\""});
  }
  request.body = wire::request_text(step);
  return request;
}

Reply reply_of(const WireStep& step) {
  std::string text = wire::reply_text(step);
  const int status = status_of(step);
  Reply reply = step.dal.empty() ? xml_reply(status, std::move(text)) : text_reply(status, text);
  if (step.headers.empty()) return reply;
  reply.headers.clear();
  for (const std::string& line : step.headers) {
    const std::size_t colon = line.find(':');
    const std::size_t value = line.find_first_not_of(' ', colon + 1);
    if (colon == std::string::npos || value == std::string::npos) {
      throw std::runtime_error("'" + line + "' is no header");
    }
    reply.headers.push_back({.name = line.substr(0, colon), .value = line.substr(value)});
  }
  return reply;
}

std::vector<Recorded> load_recording(const fs::path& folder, const RequestReader& reader) {
  return Loader(folder, reader).load();
}

}  // namespace bvconn::sandbox
