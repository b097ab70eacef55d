#pragma once

#include <array>
#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bvconn::tool {

/// One thing that is to be known about a server, and where it was found.
struct ConnectionValue {
  std::string text;
  std::string origin;  ///< "--server", "BVCONN_SERVER" or "profile test"; "" where nothing gives it

  bool given() const { return !origin.empty(); }
  bool empty() const { return text.empty(); }
};

/// How to reach the server on both routes.
struct Connection {
  ConnectionValue server;   ///< stands in for `aServerURL`
  ConnectionValue session;  ///< stands in for `aSessionID`
  ConnectionValue dal;      ///< address of the data access layer
  ConnectionValue user;
  ConnectionValue password_file;
  ConnectionValue sales_org;
  ConnectionValue app_version;
  ConnectionValue timeout;
  ConnectionValue ca_file;
  ConnectionValue client_cert;
  ConnectionValue client_key;

  /// Nothing where the time-out is that of the settings. @throws UsageError
  std::optional<std::chrono::milliseconds> time_limit() const;
  /// What the password file holds, without the line end behind it; "" where none is named.
  /// @throws UsageError
  std::string password() const;
};

/// A field of a connection by its names.
struct ConnectionField {
  std::string_view name;  ///< of the option, without dashes in front, and of the profile's key
  std::string_view variable;
  ConnectionValue Connection::*value;
  std::string_view type;
  std::string_view help;
  bool is_file = false;
};

inline constexpr std::array<ConnectionField, 11> kConnectionFields{{
    {"server", "BVCONN_SERVER", &Connection::server, "URL", "Address of the server (aServerURL)"},
    {"session", "BVCONN_SESSION", &Connection::session, "ID", "Session identifier (aSessionID)"},
    {"dal", "BVCONN_DAL_URL", &Connection::dal, "URL",
     "Log in to the data access layer there, and use it; '' for SOAP alone"},
    {"user", "BVCONN_DAL_USER", &Connection::user, "NAME", "Who logs in there"},
    {"password-file", "BVCONN_DAL_PASSWORD_FILE", &Connection::password_file, "FILE",
     "File with the password", true},
    {"sales-org", "BVCONN_DAL_SALES_ORG", &Connection::sales_org, "ORG",
     "Sales organisation to log in for"},
    {"app-version", "BVCONN_DAL_APP_VERSION", &Connection::app_version, "VERSION",
     "Version of the application"},
    {"timeout", "BVCONN_TIMEOUT", &Connection::timeout, "TIME",
     "Time-out of each request: seconds, or with a unit: 500ms, 30s, 2m"},
    {"ca-file", "BVCONN_CA_FILE", &Connection::ca_file, "FILE",
     "Certificates of the authorities to trust", true},
    {"client-cert", "BVCONN_CLIENT_CERT", &Connection::client_cert, "FILE",
     "This client's certificate", true},
    {"client-key", "BVCONN_CLIENT_KEY", &Connection::client_key, "FILE", "Its private key", true},
}};

/// What a command line says of the connection, by the names of the fields. An empty text counts as
/// given.
struct ConnectionOptions {
  std::map<std::string_view, std::string> given;
  std::optional<std::string> profile;
};

/// Where to look besides the options.
enum class ConnectionSources {
  kOptions,  ///< nowhere
  kAll,      ///< the environment, then the profile
};

/// The connection: each field from the options, else from the environment, else from the profile
/// that `--profile` or `BVCONN_PROFILE` names.
/// @throws UsageError     for a profile that is not there, and a field that cannot be understood.
/// @throws SettingsError  for a file of profiles that cannot be used.
Connection resolve_connection(const ConnectionOptions& options,
                              ConnectionSources sources = ConnectionSources::kAll);

/// `$XDG_CONFIG_HOME/bvconn/profiles.toml`, else below `~/.config`, on Windows below
/// `%LOCALAPPDATA%`; "" without a home.
std::string profiles_file();
/// The names in that file; none where it cannot be used.
std::vector<std::string> profile_names();

}  // namespace bvconn::tool
