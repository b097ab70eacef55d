#include "bvconn/platform/exchange/exchange_file.h"

#include <fcntl.h>

#include <string>
#include <utility>

#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/exchange/exchange_json.h"
#include "bvconn/platform/file_state.h"
#include "bvconn/platform/files.h"
#include "bvconn/platform/thread_slot.h"

namespace bvconn {
namespace {

// None where it is no regular file: an exchange is not for the eyes behind a device.
detail::Descriptor open_regular(const std::string& path) {
  detail::OpenedFile opened = detail::open_file(path, O_WRONLY | O_APPEND | O_CREAT);
  const auto state = opened.file ? detail::state_of(opened.file.get()) : std::nullopt;
  return state && state->is_regular ? std::move(opened.file) : detail::Descriptor();
}

// Every thread counts its exchanges from 1, so a line says whose it is.
std::string line_of(const Exchange& exchange) {
  std::string line = "{\"process\":" + conversions::integer_text(detail::process_number());
  line.append(",\"thread\":").append(conversions::integer_text(detail::thread_number()));
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
