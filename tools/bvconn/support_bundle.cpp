#include "support_bundle.h"

#include <algorithm>
#include <array>
#include <deque>
#include <sstream>
#include <vector>

#include "bvconn/core/session_state.h"
#include "bvconn/platform/http/http_library.h"
#include "bvconn/platform/platform.h"
#include "doctor_command.h"
#include "exchange_lines.h"
#include "exchange_view.h"
#include "file_tail.h"
#include "library_settings.h"
#include "mask_urls.h"
#include "settings_command.h"
#include "status.h"
#include "system.h"
#include "text_lines.h"
#include "text_mask.h"

namespace bvconn::tool {
namespace {

constexpr std::size_t kLogTail = std::size_t{64} << 10;
constexpr std::size_t kExchangesTail = std::size_t{4} << 20;
constexpr std::size_t kExchangesShown = 8;

enum class Shown { kPlain, kUrl, kHidden };

struct Variable {
  const char* name;
  Shown shown = Shown::kPlain;
};

/// What of the environment has a say. Anything else of the library's is named, and not shown.
constexpr std::array kVariables{
    Variable{"BVCONN_MACHINE_SETTINGS"},
    Variable{"BVCONN_USER_SETTINGS"},
    Variable{"BVCONN_LOG_FILE"},
    Variable{"BVCONN_LOG_MASK"},
    Variable{"BVCONN_LOG_MAX_BYTES"},
    Variable{"BVCONN_TRACE_FILE"},
    Variable{"BVCONN_MESSAGE_BOX"},
    Variable{"BVCONN_EXCHANGES"},
    Variable{"BVCONN_PROFILE"},
    Variable{"BVCONN_SERVER", Shown::kUrl},
    Variable{"BVCONN_SESSION", Shown::kHidden},
    Variable{"BVCONN_DAL_URL", Shown::kUrl},
    Variable{"BVCONN_DAL_USER"},
    Variable{"BVCONN_DAL_PASSWORD_FILE"},
    Variable{"BVCONN_DAL_SALES_ORG"},
    Variable{"BVCONN_DAL_APP_VERSION"},
    Variable{"BVCONN_TIMEOUT"},
    Variable{"BVCONN_CA_FILE"},
    Variable{"BVCONN_CLIENT_CERT"},
    Variable{"BVCONN_CLIENT_KEY"},
    Variable{"http_proxy", Shown::kUrl},
    Variable{"https_proxy", Shown::kUrl},
    Variable{"all_proxy", Shown::kUrl},
    Variable{"HTTP_PROXY", Shown::kUrl},
    Variable{"HTTPS_PROXY", Shown::kUrl},
    Variable{"ALL_PROXY", Shown::kUrl},
    Variable{"HOME"},
    Variable{"XDG_CONFIG_HOME"},
    Variable{"XDG_STATE_HOME"},
    Variable{"LANG"},
    Variable{"LC_ALL"},
    Variable{"TZ"},
    Variable{"SSL_CERT_FILE"},
    Variable{"SSL_CERT_DIR"},
};

class Bundle {
 public:
  Bundle(const Connection& connection, std::string version)
      : connection_(connection), version_(std::move(version)) {}

  std::string run() {
    learn();
    read_exchanges();
    title("bvconn support bundle");
    add_versions();
    title("Settings");
    add_settings();
    title("Environment");
    add_environment();
    title("Doctor");
    print_checks(examine(connection_), text_);
    title("Exchanges of these checks");
    print_exchanges(text_);
    title("Last exchanges");
    text_ << exchanges_;
    title("End of the log");
    add_log();
    // What one section shows by its place, another may hold anywhere.
    return mask_.hide(std::move(text_).str());
  }

 private:
  void learn() {
    mask_.add(connection_.session.text);
    try {
      mask_.add(connection_.password());
    } catch (const UsageError&) {
      // The doctor's line says that it cannot be read.
    }
    for (const Variable& variable : kVariables) {
      const auto value = variable_of(variable.name);
      if (!value) continue;
      if (variable.shown == Shown::kHidden) mask_.add(*value);
      learn_user_info(*value);
    }
    // A proxy's host and password have been seen where its port belongs.
    for (const SettingState& state : read_all_settings()) learn_user_info(state.value);
    learn_user_info(connection_.server.text);
    learn_user_info(connection_.dal.text);
  }

  /// The password in front of a URL's host may stand alone in a log.
  void learn_user_info(std::string_view url) {
    if (mask_url(url) == url) return;
    url.remove_prefix(url.find("//") == std::string_view::npos ? 0 : url.find("//") + 2);
    const std::string_view user_info = url.substr(0, url.rfind('@'));
    const std::size_t colon = user_info.find(':');
    mask_.add(user_info);
    if (colon != std::string_view::npos) mask_.add(user_info.substr(colon + 1));
  }

  void title(std::string_view name) {
    text_ << (text_.tellp() > 0 ? "\n" : "") << "== " << name << '\n';
  }

  void line(std::string_view name, std::string_view value) {
    text_ << name << ": " << mask_.mask_places(value) << '\n';
  }

  void add_versions() {
    line("made", local_time_text());
    line("bvconn", version_);
    line("HTTP", http_library_versions());
    line("compiler", __VERSION__);
    const std::string system = system_name();
    if (!system.empty()) line("system", system);
    const std::string distribution = distribution_name();
    if (!distribution.empty()) line("distribution", distribution);
  }

  void add_settings() {
    std::ostringstream found;
    run_settings({.action = SettingsOptions::Action::kList, .name{}, .value{}}, found, found);
    text_ << mask_.mask_places(found.str());
  }

  void add_environment() {
    for (const Variable& variable : kVariables) {
      const auto value = variable_of(variable.name);
      if (!value) continue;
      switch (variable.shown) {
        case Shown::kPlain:
          line(variable.name, *value);
          break;
        case Shown::kUrl:
          line(variable.name, mask_url(*value));
          break;
        case Shown::kHidden:
          text_ << variable.name << ": (set)\n";
          break;
      }
    }
    for (const std::string& each : variables()) {
      const std::string_view entry(each);
      const std::string_view name = entry.substr(0, entry.find('='));
      const bool known = std::ranges::any_of(
          kVariables, [&](const Variable& variable) { return variable.name == name; });
      if (!known && name.starts_with("BVCONN_")) text_ << name << ": (set; not known here)\n";
    }
  }

  /// Before the checks, whose own exchanges go to the same file. Of those that are not shown the
  /// secrets are learned all the same.
  void read_exchanges() {
    const std::string path = variable_of("BVCONN_EXCHANGES").value_or("");
    if (path.empty()) {
      exchanges_ =
          "None: BVCONN_EXCHANGES names no file. Set it for the application, repeat what failed, "
          "and make this bundle with the same variable again.\n";
      return;
    }
    const FileTail tail = file_tail(path, kExchangesTail);
    if (!tail.trouble.empty()) {
      exchanges_ = "None: " + path + ": " + tail.trouble + "\n";
      return;
    }
    std::deque<std::string> views;
    for (const std::string& each : lines_of(tail.text)) {
      auto exchange = exchange_from_json(each);
      if (exchange) mask_again(*exchange, mask_);
      views.push_back(exchange ? mask_.mask_places(exchange_view(*exchange))
                               : "(a line that is no exchange is left out)\n");
      if (views.size() > kExchangesShown) views.pop_front();
    }
    exchanges_ = "The last " + std::to_string(views.size()) + " of " + path + ":\n";
    for (const std::string& view : views) exchanges_.append(view);
  }

  void add_log() {
    const std::string path = platform::current().logger()->LogFilePath();
    const FileTail tail = file_tail(path, kLogTail);
    if (!tail.trouble.empty()) {
      text_ << "None: " << (path.empty() ? "this user has no log" : path + ": " + tail.trouble)
            << '\n';
      return;
    }
    text_ << path << '\n';
    for (const std::string& each : lines_of(tail.text)) {
      text_ << mask_.mask_places(indented_text(each, 0));
    }
  }

  const Connection& connection_;
  std::string version_;
  TextMask mask_;
  std::string exchanges_;
  std::ostringstream text_;
};

}  // namespace

std::string support_bundle(const Connection& connection, const std::string& version) {
  return Bundle(connection, version).run();
}

}  // namespace bvconn::tool
