#include "bvconn/observation/world.h"

#include <utility>

namespace bvconn::automation::detail {

struct World::State {
  Sightings seen;
  std::optional<std::string> soap_action;
  std::int32_t timeout_ms = 0;
};

namespace {

using StatePointer = std::shared_ptr<World::State>;

// What it says matters to no request: where an operation cannot make its result from it, the
// request has been seen by then.
constexpr const char* kAnswer =
    "<Envelope xmlns='http://schemas.xmlsoap.org/soap/envelope/'><Body>"
    "<answer xmlns='urn:observed'><return xmlns=''>OK</return></answer></Body></Envelope>";

class RecordingTransport final : public HTTPTransport {
 public:
  explicit RecordingTransport(StatePointer state) : state_(std::move(state)) {}

  void Option(std::string_view, std::string_view) override {}
  void setProxy(std::string_view, std::string_view) override {}
  void NoProxy() override {}
  void SOAPAction(std::string_view value) override { state_->soap_action = std::string(value); }
  void Timeout(std::int32_t milliseconds) override { state_->timeout_ms = milliseconds; }
  void Send(std::string_view, std::string_view text) override {
    state_->seen.posts.push_back({.text = std::string(text),
                                  .soap_action = state_->soap_action,
                                  .timeout_ms = state_->timeout_ms});
  }
  std::string Receive(std::string_view) override { return kAnswer; }

 private:
  StatePointer state_;
};

class RecordingServiceObject final : public ServiceObject {
 public:
  RecordingServiceObject(std::string_view name, StatePointer state)
      : name_(name), state_(std::move(state)) {}

  std::string_view name() const override { return name_; }
  std::string invoke(std::string_view operation, std::span<const Variant> arguments,
                     bool by_name) override {
    state_->seen.dal_calls.push_back({.object = name_,
                                      .operation = std::string(operation),
                                      .by_name = by_name,
                                      .arguments = {arguments.begin(), arguments.end()}});
    // The one answer that is no envelope: nothing is disabled.
    return operation == "GetDisabledServices" ? "" : kAnswer;
  }
  bool offers(std::string_view interface_name) const override { return interface_name == name_; }

 private:
  std::string name_;
  StatePointer state_;
};

class SilentLogger final : public SessionLogger {
 public:
  // Two operations write their own line there.
  std::string LogFilePath() override { return "/dev/null"; }
  void LogError(std::string_view, std::string_view, const Error&, std::int32_t) override {}
  void LogWarning(std::string_view, std::string_view, std::string_view, std::int32_t) override {}
  void LogInfo(std::string_view, std::string_view, std::string_view, std::int32_t) override {}
  void LogAtLevel(std::int32_t, std::string_view, std::string_view, std::string_view,
                  std::int32_t) override {}
  void EnterMethod(std::string_view, std::string_view, std::int32_t) override {}
  void ExitMethod(std::string_view, std::string_view, std::int32_t) override {}
  std::int32_t LogMask() override { return 0; }
  std::string TracingFilePath() override { return "/dev/null"; }
};

/// Settings without values, into which nothing can be written.
class NoSettings final : public RegistryAccess {
 public:
  bool Exists(std::string_view) override { return false; }
  void Write(std::string_view, const SettingValue&, std::string_view) override {}
  double ReadNumber(SettingsRoot, std::string_view, std::string_view) override { return 0; }
  std::string ReadString(SettingsRoot, std::string_view, std::string_view) override { return ""; }
};

class SilentMessageBox final : public MessageBox {
 public:
  void show(std::string_view, std::string_view) override {}
};

}  // namespace

World::World() : state_(std::make_shared<State>()) {}

platform::Platform World::platform() const {
  return {
      .transport = [state = state_] { return std::make_shared<RecordingTransport>(state); },
      .logger = [] { return std::make_shared<SilentLogger>(); },
      .settings = [] { return std::make_unique<NoSettings>(); },
      .service_object =
          [state = state_](std::string_view name) {
            return std::make_shared<RecordingServiceObject>(name, state);
          },
      .clock = make_system_clock,
      .message_box = [] { return std::make_shared<SilentMessageBox>(); },
  };
}

void World::forget() {
  *state_ = State();
}

const Sightings& World::sightings() const {
  return state_->seen;
}

}  // namespace bvconn::automation::detail
