#include "own_files.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "bvconn/core/session_state.h"

namespace bvconn::test {

OwnFiles::OwnFiles() {
  std::string pattern = (std::filesystem::temp_directory_path() / "bvconn-live-XXXXXX").string();
  folder_ = ::mkdtemp(pattern.data());
  ::setenv("BVCONN_MACHINE_SETTINGS", path("machine.toml").c_str(), 1);
  ::setenv("BVCONN_USER_SETTINGS", path("user.toml").c_str(), 1);
  ::setenv("BVCONN_LOG_FILE", path("bvconn.log").c_str(), 1);
  ::setenv("BVCONN_TRACE_FILE", path("traffic.log").c_str(), 1);
  session() = SessionState();
}

OwnFiles::~OwnFiles() {
  session() = SessionState();
  std::filesystem::remove_all(folder_);
}

std::string OwnFiles::contents(const std::string& name) const {
  std::ifstream file(path(name), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void OwnFiles::write(const std::string& name, const std::string& text) const {
  std::ofstream(path(name), std::ios::binary) << text;
}

}  // namespace bvconn::test
