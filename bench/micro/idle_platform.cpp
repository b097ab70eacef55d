#include "micro/idle_platform.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string_view>
#include <utility>

namespace bench {
namespace {

class IdleTransport final : public bvconn::HTTPTransport {
 public:
  explicit IdleTransport(std::string reply) : reply_(std::move(reply)) {
    facts_.went_out = true;
    facts_.http_status = 200;
    facts_.reply_headers.assign(
        "HTTP/1.1 200 OK\r\nDate: Fri, 05 Jan 2007 13:04:09 GMT\r\nServer: bench\r\n"
        "Content-Type: text/xml; charset=utf-8\r\nContent-Length: 512\r\n\r\n");
  }

  void Option(std::string_view, std::string_view) override {}
  void setProxy(std::string_view, std::string_view) override {}
  void NoProxy() override {}
  void SOAPAction(std::string_view) override {}
  void Timeout(std::int32_t) override {}
  void Send(std::string_view, std::string_view) override {}
  std::string Receive(std::string_view) override { return reply_; }
  const bvconn::WireFacts* LastWire() const override { return &facts_; }

 private:
  std::string reply_;
  bvconn::WireFacts facts_;
};

/// A folder that goes with the process.
const std::filesystem::path& own_folder() {
  struct Folder {
    std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("bvconn-bench-" + std::to_string(::getpid()));
    Folder() { std::filesystem::create_directories(path); }
    ~Folder() {
      std::error_code ignored;
      std::filesystem::remove_all(path, ignored);
    }
  };
  static const Folder folder;
  return folder.path;
}

void write_settings(const char* variable, const std::string& name, std::string_view line) {
  const std::filesystem::path path = own_folder() / name;
  std::ofstream(path) << "['Software\\Brimvale\\Torvex\\AppData']\n" << line << '\n';
  ::setenv(variable, path.c_str(), 1);
}

}  // namespace

bvconn::platform::Platform idle_platform(std::string reply) {
  bvconn::platform::Platform platform = bvconn::platform::system_platform();
  platform.transport = [reply] { return std::make_shared<IdleTransport>(reply); };
  return platform;
}

void use_own_files(const char* log_mask) {
  write_settings("BVCONN_USER_SETTINGS", "user.toml", "TraceSoapTraffic = 0");
  write_settings("BVCONN_MACHINE_SETTINGS", "machine.toml", "defaultTimeOut = 60000");
  ::setenv("BVCONN_LOG_FILE", (own_folder() / "bvconn.log").c_str(), 1);
  ::setenv("BVCONN_LOG_MASK", log_mask, 1);
}

}  // namespace bench
