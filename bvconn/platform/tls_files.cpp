#include "bvconn/platform/tls_files.h"

#include <optional>
#include <utility>

#include "bvconn/platform/files.h"
#include "bvconn/platform/live_error.h"
#include "bvconn/platform/thread_record.h"

namespace bvconn {
namespace {

struct ThreadsFiles {
  std::optional<TlsFiles> in_force;
};

std::optional<TlsFiles>& files_of_thread() {
  return detail::ThreadRecord<ThreadsFiles>::get().in_force;
}

}  // namespace

void use_tls_files(TlsFiles files) {
  only_errors([&] { files_of_thread() = std::move(files); });
}

TlsFiles tls_files() {
  return only_errors([] {
    auto& files = files_of_thread();
    if (!files) {
      files = TlsFiles{.ca_file = detail::environment("BVCONN_CA_FILE"),
                       .client_cert = detail::environment("BVCONN_CLIENT_CERT"),
                       .client_key = detail::environment("BVCONN_CLIENT_KEY")};
    }
    return *files;
  });
}

}  // namespace bvconn
