#include <memory>
#include <span>
#include <utility>

#include "bvconn/core/session_state.h"
#include "bvconn/platform/conversions/conversions.h"
#include "bvconn/platform/error_numbers.h"
#include "bvconn/testing/world_state.h"

namespace bvconn::test::detail {
namespace {

using StatePointer = std::shared_ptr<WorldState>;

/// The operation of the interface that runs on this thread, as the record of exchanges knows it.
SeenCall begin_call(ExchangeRoute route) {
  const ExchangeLog::Call& running = session().exchanges().running();
  SeenCall call;
  call.cls = running.cls;
  call.operation = running.operation;
  call.route = route;
  return call;
}

class WorldTransport final : public HTTPTransport {
 public:
  explicit WorldTransport(StatePointer state) : state_(std::move(state)) {}

  void Option(std::string_view key, std::string_view value) override {
    note(std::string("Option ").append(key) + " " + in_quotes(value));
  }
  void setProxy(std::string_view host, std::string_view port) override {
    note("setProxy " + in_quotes(host) + " " + in_quotes(port));
  }
  void NoProxy() override { note("NoProxy"); }
  void SOAPAction(std::string_view value) override {
    note("SOAPAction " + in_quotes(value));
    soap_action_ = std::string(value);
  }
  void Timeout(std::int32_t milliseconds) override {
    note("Timeout " + std::to_string(milliseconds));
    timeout_ms_ = milliseconds;
  }
  void Send(std::string_view url, std::string_view text) override {
    reply_.reset();
    note("Send " + in_quotes(url));
    SeenCall call = begin_call(ExchangeRoute::kSoap);
    call.url = url;
    call.soap_action = soap_action_;
    call.timeout_ms = timeout_ms_;
    call.text = text;
    ScriptedAnswer answer = state_->answer(call);
    if (answer.error() && !answer.fails_in_receive()) throw Error(*answer.error());
    reply_ = answer.error() ? Reply{.text = {}, .error = answer.error()}
                            : Reply{.text = answer.text_for(call), .error = {}};
  }
  std::string Receive(std::string_view encoding) override {
    note("Receive " + in_quotes(encoding));
    const auto reply = std::exchange(reply_, std::nullopt);
    if (!reply) throw Error(error_numbers::kBadReply, "HTTPTransport", "There is no reply");
    if (reply->error) throw Error(*reply->error);
    return reply->text;
  }

 private:
  struct Reply {
    std::string text;
    std::optional<Error> error;
  };

  void note(const std::string& line) { state_->note(&Record::transport, line); }

  StatePointer state_;
  std::optional<std::string> soap_action_;
  std::int32_t timeout_ms_ = 0;
  std::optional<Reply> reply_;
};

class WorldServiceObject final : public ServiceObject {
 public:
  WorldServiceObject(StatePointer state, std::string_view name)
      : state_(std::move(state)), name_(name) {}

  std::string_view name() const override { return name_; }

  std::string invoke(std::string_view operation, std::span<const Variant> arguments,
                     bool by_name) override {
    std::string line = std::string(name_).append(".").append(operation) + "(";
    for (const Variant& argument : arguments) {
      if (line.back() != '(') line += ", ";
      line += shown(argument);
    }
    state_->note(&Record::dal, line + (by_name ? ") by name" : ")"));
    SeenCall call = begin_call(ExchangeRoute::kDal);
    call.object = name_;
    call.object_operation = operation;
    call.arguments.assign(arguments.begin(), arguments.end());
    call.by_name = by_name;
    const ScriptedAnswer answer = state_->answer(call);
    if (answer.error()) throw Error(*answer.error());
    return answer.text_for(call);
  }

  bool offers(std::string_view interface_name) const override {
    if (interface_name == name_) return true;
    const std::scoped_lock lock(state_->mutex);
    const auto found = state_->interfaces.find(name_);
    if (found == state_->interfaces.end()) return false;
    for (const std::string& offered : found->second) {
      if (offered == interface_name) return true;
    }
    return false;
  }

 private:
  StatePointer state_;
  std::string name_;
};

class WorldLogger final : public SessionLogger {
 public:
  explicit WorldLogger(StatePointer state) : state_(std::move(state)) {}

  std::string LogFilePath() override {
    state_->note("SessionLogger LogFilePath");
    const std::scoped_lock lock(state_->mutex);
    return state_->log_file;
  }
  std::int32_t LogMask() override {
    state_->note("SessionLogger LogMask");
    const std::scoped_lock lock(state_->mutex);
    return state_->log_mask;
  }
  std::string TracingFilePath() override {
    state_->note("SessionLogger TracingFilePath");
    const std::scoped_lock lock(state_->mutex);
    return state_->tracing_file;
  }
  void LogError(std::string_view cls, std::string_view method, const Error& error,
                std::int32_t line) override {
    write("LogError " + join(cls, method) + " " + number_text(error.number) + " " +
          in_quotes(error.source) + " " + in_quotes(error.description) + " " +
          std::to_string(line));
  }
  void LogWarning(std::string_view cls, std::string_view method, std::string_view text,
                  std::int32_t code) override {
    write("LogWarning " + join(cls, method) + " " + in_quotes(text) + " " + std::to_string(code));
  }
  void LogInfo(std::string_view cls, std::string_view method, std::string_view text,
               std::int32_t code) override {
    write("LogInfo " + join(cls, method) + " " + in_quotes(text) + " " + std::to_string(code));
  }
  void LogAtLevel(std::int32_t level, std::string_view cls, std::string_view method,
                  std::string_view text, std::int32_t code) override {
    write("LogAtLevel " + std::to_string(level) + " " + join(cls, method) + " " + in_quotes(text) +
          " " + std::to_string(code));
  }
  void EnterMethod(std::string_view cls, std::string_view method, std::int32_t level) override {
    write("EnterMethod " + join(cls, method) + " " + std::to_string(level));
  }
  void ExitMethod(std::string_view cls, std::string_view method, std::int32_t level) override {
    write("ExitMethod " + join(cls, method) + " " + std::to_string(level));
  }

 private:
  static std::string join(std::string_view cls, std::string_view method) {
    return std::string(cls).append(".").append(method);
  }
  // Small numbers read best as they are, the others by their bits.
  static std::string number_text(std::int32_t number) {
    return number >= 0 && number < 1000 ? std::to_string(number) : hex_number(number);
  }
  void write(const std::string& line) { state_->note(&Record::log, line); }

  StatePointer state_;
};

class WorldSettings final : public RegistryAccess {
 public:
  explicit WorldSettings(StatePointer state) : state_(std::move(state)) {}

  bool Exists(std::string_view path) override {
    note(std::string("Exists ").append(path));
    return value_of(path).has_value();
  }
  void Write(std::string_view path, const SettingValue& value, std::string_view type) override {
    const auto* number = std::get_if<std::int64_t>(&value);
    note(std::string("Write ").append(path) + " " +
         (number != nullptr ? std::to_string(*number) : in_quotes(std::get<std::string>(value))) +
         " " + in_quotes(type));
    const std::scoped_lock lock(state_->mutex);
    state_->settings[small_letters(path)] = value;
  }
  double ReadNumber(SettingsRoot root, std::string_view key, std::string_view name) override {
    const std::string path = full_path(root, key, name);
    note("ReadNumber " + path);
    const auto value = value_of(path);
    if (!value) return 0;
    if (const auto* number = std::get_if<std::int64_t>(&*value)) {
      return static_cast<double>(*number);
    }
    return conversions::text_to_double(std::get<std::string>(*value));
  }
  std::string ReadString(SettingsRoot root, std::string_view key, std::string_view name) override {
    const std::string path = full_path(root, key, name);
    note("ReadString " + path);
    const auto value = value_of(path);
    if (!value) return "";
    if (const auto* number = std::get_if<std::int64_t>(&*value)) return std::to_string(*number);
    return std::get<std::string>(*value);
  }

 private:
  static std::string full_path(SettingsRoot root, std::string_view key, std::string_view name) {
    std::string path = root == SettingsRoot::kLocalMachine ? "HKLM\\" : "HKCU\\";
    return path.append(key).append("\\").append(name);
  }
  std::optional<SettingValue> value_of(std::string_view path) const {
    const std::scoped_lock lock(state_->mutex);
    const auto found = state_->settings.find(small_letters(path));
    if (found == state_->settings.end()) return std::nullopt;
    return found->second;
  }
  void note(const std::string& line) {
    state_->note(&Record::settings, line);
    const std::scoped_lock lock(state_->mutex);
    if (state_->settings_error) throw Error(*state_->settings_error);
  }

  StatePointer state_;
};

class WorldClock final : public Clock {
 public:
  explicit WorldClock(StatePointer state) : state_(std::move(state)) {}
  Date now() override {
    const std::scoped_lock lock(state_->mutex);
    return state_->now;
  }
  double timer() override {
    constexpr std::int64_t kDayMs = std::int64_t{24} * 60 * 60 * 1000;
    const std::scoped_lock lock(state_->mutex);
    if (state_->timer.empty()) {
      const std::int64_t in_day = (state_->now.milliseconds % kDayMs + kDayMs) % kDayMs;
      return static_cast<double>(in_day) / 1000;
    }
    const double value = state_->timer.front();
    if (state_->timer.size() > 1) state_->timer.pop_front();
    return value;
  }

 private:
  StatePointer state_;
};

class WorldMessageBox final : public ModalMessage {
 public:
  explicit WorldMessageBox(StatePointer state) : state_(std::move(state)) {}
  void show(std::string_view title, std::string_view text) override {
    state_->note(&Record::messages, std::string(title).append(" | ").append(text));
  }

 private:
  StatePointer state_;
};

}  // namespace

platform::Platform platform_over(const StatePointer& state) {
  return {
      .transport =
          [state] {
            {
              const std::scoped_lock lock(state->mutex);
              ++state->transports_made;
            }
            return std::make_shared<WorldTransport>(state);
          },
      .logger = [state] { return std::make_shared<WorldLogger>(state); },
      .settings = [state] { return std::make_unique<WorldSettings>(state); },
      .service_object = [state](std::string_view name) -> std::shared_ptr<ServiceObject> {
        {
          const std::scoped_lock lock(state->mutex);
          const auto error = state->unmakeable.find(std::string(name));
          if (error != state->unmakeable.end()) throw Error(error->second);
        }
        state->note(std::string("make ").append(name));
        return std::make_shared<WorldServiceObject>(state, name);
      },
      .clock = [state] { return std::make_shared<WorldClock>(state); },
      .message_box = [state] { return std::make_shared<WorldMessageBox>(state); },
  };
}

void use_service_objects(const StatePointer& state) {
  SessionState& of_thread = session();
  const auto make = [&state](std::string_view name) {
    return std::make_shared<WorldServiceObject>(state, name);
  };
#define BVCONN_SERVICE_OBJECT(name, ...) of_thread.name = make(#name);
#include "bvconn/platform/torvexlib/service_object_rows.inc"
  of_thread.UsingTorvexDAL = true;
}

}  // namespace bvconn::test::detail
