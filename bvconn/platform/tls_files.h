#pragma once

#include <string>

#include "bvconn/platform/export.h"

namespace bvconn {

/// Who is trusted behind an https URL, and as whom the client shows itself: files in the form PEM,
/// by name. With an empty `ca_file` the system's store counts, with an empty `client_cert` the
/// client shows nothing, and with an empty `client_key` the key lies in the certificate's file.
struct BVCONN_EXPORT TlsFiles {
  std::string ca_file{};
  std::string client_cert{};
  std::string client_key{};

  bool operator==(const TlsFiles&) const = default;
};

/// The files of the calling thread's requests, on both routes, from the next request on: all three,
/// in place of those in force. An `Option` that was set on the thread's `HTTPTransport` stands
/// above them.
///
/// Nothing is opened here. A request to an https URL whose file is missing or cannot be read fails
/// with 0x80044303, which names the file, and is not sent.
BVCONN_EXPORT void use_tls_files(TlsFiles files);

/// The files in force on the calling thread: those of the last `use_tls_files`, else those that the
/// environment named (`BVCONN_CA_FILE`, `BVCONN_CLIENT_CERT`, `BVCONN_CLIENT_KEY`) when the thread
/// asked for the first time, as its first request does; it is not looked at again.
BVCONN_EXPORT TlsFiles tls_files();

}  // namespace bvconn
