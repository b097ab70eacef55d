#include "bvconn/observation/world.h"

#include <utility>

#include "bvconn/platform/settings/no_settings.h"

namespace bvconn::automation::detail {

namespace {

// What it says matters to no request: where an operation cannot make its result from it, the
// request has been seen by then.
constexpr const char* kAnswer =
    "<Envelope xmlns='http://schemas.xmlsoap.org/soap/envelope/'><Body>"
    "<answer xmlns='urn:observed'><return xmlns=''>OK</return></answer></Body></Envelope>";

}  // namespace

struct World::State {
  Sightings seen;
  std::optional<std::string> soap_action;
  std::int32_t timeout_ms = 0;
  std::string answer = kAnswer;
  std::optional<Error> failure;

  const std::string& reply() const {
    if (failure) throw Error(*failure);
    return answer;
  }
};

namespace {

using StatePointer = std::shared_ptr<World::State>;

class RecordingTransport final : public HTTPTransport {
 public:
  explicit RecordingTransport(StatePointer state) : state_(std::move(state)) {}

  void Option(std::string_view, std::string_view) override {}
  void setProxy(std::string_view, std::string_view) override {}
  void NoProxy() override {}
  void SOAPAction(std::string_view value) override { state_->soap_action = std::string(value); }
  void Timeout(std::int32_t milliseconds) override { state_->timeout_ms = milliseconds; }
  void Send(std::string_view url, std::string_view text) override {
    state_->seen.posts.push_back({.url = std::string(url),
                                  .text = std::string(text),
                                  .soap_action = state_->soap_action,
                                  .timeout_ms = state_->timeout_ms});
  }
  std::string Receive(std::string_view) override { return state_->reply(); }

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
    return operation == "GetDisabledServices" ? "" : state_->reply();
  }
  bool offers(std::string_view interface_name) const override { return interface_name == name_; }

 private:
  std::string name_;
  StatePointer state_;
};

class RecordingLogger final : public SessionLogger {
 public:
  explicit RecordingLogger(StatePointer state) : state_(std::move(state)) {}

  // Two operations write their own line there.
  std::string LogFilePath() override { return "/dev/null"; }
  void LogError(std::string_view cls, std::string_view method, const Error& error,
                std::int32_t) override {
    note("LogError", cls, method, 0, error.description);
  }
  void LogWarning(std::string_view cls, std::string_view method, std::string_view text,
                  std::int32_t) override {
    note("LogWarning", cls, method, 0, text);
  }
  void LogInfo(std::string_view cls, std::string_view method, std::string_view text,
               std::int32_t) override {
    note("LogInfo", cls, method, 0, text);
  }
  void LogAtLevel(std::int32_t level, std::string_view cls, std::string_view method,
                  std::string_view text, std::int32_t) override {
    note("LogAtLevel", cls, method, level, text);
  }
  void EnterMethod(std::string_view cls, std::string_view method, std::int32_t level) override {
    note("EnterMethod", cls, method, level, "");
  }
  void ExitMethod(std::string_view cls, std::string_view method, std::int32_t level) override {
    note("ExitMethod", cls, method, level, "");
  }
  std::int32_t LogMask() override { return 0; }
  std::string TracingFilePath() override { return "/dev/null"; }

 private:
  void note(std::string_view action, std::string_view cls, std::string_view method,
            std::int32_t level, std::string_view text) {
    state_->seen.log.push_back({.action = std::string(action),
                                .cls = std::string(cls),
                                .method = std::string(method),
                                .level = level,
                                .text = std::string(text)});
  }

  StatePointer state_;
};

/// No time passes, so that a line that tells how long something took is the same each time.
class StandingClock final : public Clock {
 public:
  Date now() override { return {.milliseconds = 1'200'000'000'000}; }
  double timer() override { return 36'000; }
};

class SilentMessageBox final : public ModalMessage {
 public:
  void show(std::string_view, std::string_view) override {}
};

}  // namespace

World::World() : state_(std::make_shared<State>()) {}

platform::Platform World::platform() const {
  return {
      .transport = [state = state_] { return std::make_shared<RecordingTransport>(state); },
      .logger = [state = state_] { return std::make_shared<RecordingLogger>(state); },
      .settings = [] { return std::make_unique<NoSettings>(); },
      .service_object =
          [state = state_](std::string_view name) {
            return std::make_shared<RecordingServiceObject>(name, state);
          },
      .clock = [] { return std::make_shared<StandingClock>(); },
      .message_box = [] { return std::make_shared<SilentMessageBox>(); },
  };
}

void World::forget() {
  state_->seen = Sightings();
  state_->soap_action.reset();
  state_->timeout_ms = 0;
}

void World::answer_with(std::string text) {
  state_->answer = std::move(text);
  state_->failure.reset();
}

void World::fail_with(Error error) {
  state_->failure = std::move(error);
}

void World::answer_as_usual() {
  answer_with(kAnswer);
}

const Sightings& World::sightings() const {
  return state_->seen;
}

}  // namespace bvconn::automation::detail
