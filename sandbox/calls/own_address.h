#pragma once

#include <string>

namespace bvconn::sandbox {

/// Where the sandbox itself is reached by its own calls.
struct OwnAddress {
  std::string url;        ///< "http://127.0.0.1:8080"
  std::string ca_file{};  ///< who is trusted behind https; "" for the system's store
};

/// How own calls come to a server that shows this certificate of the user's and is to be had at
/// this URL, by the numeric address on which it listens: what it shows is trusted as it is, and
/// the host is one that it stands for, where one leads here and nowhere else. Asks for addresses of
/// names, so it may take a while. Throws std::runtime_error for a file that cannot be read.
OwnAddress own_address_by(const std::string& certificate_file, const std::string& url,
                          const std::string& listening);

}  // namespace bvconn::sandbox
