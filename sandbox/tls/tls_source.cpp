#include "sandbox/tls/tls_source.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <thread>
#include <utility>

#include "bvconn/platform/files.h"
#include "sandbox/own_files.h"
#include "sandbox/tls/certificates.h"

namespace bvconn::sandbox {
namespace {

namespace fs = std::filesystem;
using std::chrono::hours;
using std::chrono::system_clock;

constexpr hours kAuthorityLifetime{24 * 3650};
constexpr hours kServerLifetime{24 * 90};
/// A certificate is changed so long before its end, and an authority too: it has to outlive what it
/// vouches for.
constexpr hours kChangedBeforeEnd{24 * 30};
/// How often the user's own files are looked at.
constexpr std::chrono::minutes kOwnFilesPause{10};
constexpr std::size_t kLargestFile = std::size_t{1} << 20;

/// Holds off other processes that use the same folder.
class FolderLock {
 public:
  explicit FolderLock(const fs::path& folder)
      : opened_(detail::open_file((folder / ".lock").string(), O_RDWR | O_CREAT)) {
    constexpr std::chrono::seconds kPatience{10};
    constexpr std::chrono::milliseconds kPause{20};
    if (!opened_.file) fail(folder, detail::system_message(opened_.code));
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (::flock(opened_.file.get(), LOCK_EX | LOCK_NB) != 0) {
      if (std::chrono::steady_clock::now() > deadline) fail(folder, "another process holds it");
      std::this_thread::sleep_for(kPause);
    }
  }

 private:
  [[noreturn]] static void fail(const fs::path& folder, const std::string& reason) {
    throw std::runtime_error("no authority can be kept in '" + folder.string() + "': " + reason);
  }

  detail::OpenedFile opened_;
};

void put(const fs::path& file, const std::string& text) {
  const fs::path unfinished = file.string() + "." + std::to_string(::getpid());
  fs::remove(unfinished);
  NewFile written(unfinished);
  written.write(text);
  written.finish(file);
}

/// Valid for as long as what it vouches for will be.
bool is_usable(const CertifiedKey& authority) {
  try {
    const Validity valid = validity_of(authority);
    const auto now = system_clock::now();
    return valid.begin <= now && now + kServerLifetime + kChangedBeforeEnd < valid.end;
  } catch (const std::runtime_error&) {
    return false;
  }
}

/// The authority of a folder, made where there is none that will do. The key's file has the
/// certificate too, so that the two of them are never of different authorities.
CertifiedKey kept_authority(const fs::path& folder) {
  const FolderLock lock(folder);
  const fs::path certificate_file = authority_file_in(folder.string());
  const fs::path key_file = folder / "authority-key.pem";
  CertifiedKey authority;
  if (fs::exists(key_file)) {
    authority.key = text_of_file(key_file.string(), kLargestFile, Readers::kOwnerAlone);
    authority.certificate = authority.key;
  }
  if (!is_usable(authority)) {
    authority = make_authority(kAuthorityLifetime);
    put(key_file, authority.key + authority.certificate);
  }
  // What stands behind the key is what everybody has to know.
  const auto begin = authority.certificate.find("-----BEGIN CERTIFICATE-----");
  authority.certificate.erase(0, begin);
  const bool is_told =
      fs::exists(certificate_file) &&
      text_of_file(certificate_file.string(), kLargestFile) == authority.certificate;
  if (!is_told) put(certificate_file, authority.certificate);
  return authority;
}

TlsIdentity made_for(const std::string& folder, const std::vector<std::string>& names) {
  const CertifiedKey authority = kept_authority(folder);
  CertifiedKey server = make_server(authority, names, kServerLifetime);
  return {.certificates = server.certificate + authority.certificate,
          .key = std::move(server.key),
          .renew_at = system_clock::now() + kServerLifetime - kChangedBeforeEnd};
}

TlsIdentity read_from(const TlsOptions& options) {
  return {.certificates = text_of_file(options.certificate_file, kLargestFile),
          .key = text_of_file(options.key_file, kLargestFile),
          .renew_at = system_clock::now() + kOwnFilesPause};
}

std::vector<std::string> server_names(const TlsOptions& options, const std::string& address) {
  std::vector<std::string> names{"localhost", "127.0.0.1", "::1"};
  const auto add = [&](const std::string& name) {
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
  };
  if (address != "0.0.0.0" && address != "::") add(address);
  for (const std::string& each : options.names) add(each);
  return names;
}

/// A folder of the user's alone, made where it is not there.
std::string folder_of(const TlsOptions& options) {
  const std::string folder = options.folder.empty() ? default_tls_folder() : options.folder;
  if (folder.empty()) {
    throw std::runtime_error(
        "there is no home folder to keep an authority in, name one with "
        "--tls-folder");
  }
  const std::string path = fs::absolute(folder).string();
  if (!detail::make_folders_of(path + "/")) {
    throw std::runtime_error("the folder '" + path + "' cannot be made");
  }
  return path;
}

}  // namespace

std::string default_tls_folder() {
  return detail::user_file(detail::UserFolder::kState, "bvsandbox/tls");
}

std::string authority_file_in(const std::string& folder) {
  return (fs::path(folder) / "authority.pem").string();
}

TlsSetup tls_setup(const TlsOptions& options, const std::string& listening_address) {
  if (!options.is_on) return {};
  if (!options.certificate_file.empty())
    return {.source = [options] { return read_from(options); }};
  const std::string folder = folder_of(options);
  return {.source = [folder, names = server_names(
                                 options, listening_address)] { return made_for(folder, names); },
          .authority_file = authority_file_in(folder)};
}

}  // namespace bvconn::sandbox
