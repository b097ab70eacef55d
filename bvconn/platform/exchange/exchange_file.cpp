#include "bvconn/platform/exchange/exchange_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/exchange/exchange_json.h"
#include "bvconn/platform/files.h"

namespace bvconn {
namespace {

// Opened without waiting, so that a pipe that nobody reads holds up no call.
detail::Descriptor open_regular(const std::string& path) {
  constexpr int kFlags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
  detail::Descriptor file(::open(path.c_str(), kFlags, 0600));
  struct stat state {};
  if (file && (::fstat(file.get(), &state) != 0 || !S_ISREG(state.st_mode))) {
    return detail::Descriptor();
  }
  return file;
}

// Every thread counts its exchanges from 1, so a line says whose it is.
std::string line_of(const Exchange& exchange) {
  std::string line = "{\"process\":" + conversions::integer_text(::getpid());
  line.append(",\"thread\":").append(conversions::integer_text(::gettid()));
  line.append(",").append(exchange_json(exchange), 1);
  return line.append("\n");
}

}  // namespace

ExchangeLog::Listener make_exchange_file() {
  std::string path = detail::environment("BVCONN_EXCHANGES");
  if (path.empty()) return {};
  return [path = std::move(path)](const Exchange& exchange) {
    const detail::Descriptor file = open_regular(path);
    if (file) detail::write_all(file.get(), line_of(exchange));
  };
}

}  // namespace bvconn
