#include "memory/quiet_world.h"

#include "bvconn/core/session_state.h"
#include "bvconn/platform/error_numbers.h"
#include "support/idle_logger.h"
#include "support/idle_settings.h"
#include "support/idle_transport.h"

namespace bvconn::test {
namespace {

class QuietLogger final : public IdleLogger {
 public:
  explicit QuietLogger(QuietWorld& world) : world_(world) {}

  std::string LogFilePath() override { return "/dev/null"; }
  std::string TracingFilePath() override { return "/dev/null"; }
  void LogError(std::string_view, std::string_view method, const Error& error,
                std::int32_t) override {
    ++world_.errors_logged;
    world_.last_logged = error.number;
    if (method.starts_with("TraceSoapTraffic") && error.number == error_numbers::kOutOfMemory) {
      ++world_.short_settings_logged;
    }
  }
  void LogInfo(std::string_view, std::string_view, std::string_view text, std::int32_t) override {
    if (text == "Heartbeat Returned OK.") ++world_.beats_that_were_ok;
  }

 private:
  QuietWorld& world_;
};

class QuietSettings final : public IdleSettings {
 public:
  std::string ReadString(SettingsRoot root, std::string_view, std::string_view) override {
    return root == SettingsRoot::kCurrentUser ? "True" : "a port of more than 15 letters";
  }
};

class QuietTransport final : public IdleTransport {
 public:
  explicit QuietTransport(QuietWorld& world) : world_(world) {}
  void Send(std::string_view, std::string_view) override {
    if (world_.send_error) throw Error(*world_.send_error);
  }
  std::string Receive(std::string_view) override { return world_.reply; }

 private:
  QuietWorld& world_;
};

class QuietServiceObject final : public ServiceObject {
 public:
  QuietServiceObject(QuietWorld& world, std::string_view name) : world_(world), name_(name) {}
  std::string_view name() const override { return name_; }
  std::string invoke(std::string_view operation, std::span<const Variant>, bool) override {
    return operation == "GetDisabledServices" ? "urn:A.method|urn:B.method|" : world_.reply;
  }
  bool offers(std::string_view) const override { return false; }

 private:
  QuietWorld& world_;
  std::string name_;
};

class QuietClock final : public Clock {
 public:
  Date now() override { return from_civil({.year = 2007, .month = 1, .day = 5, .hour = 10}); }
  double timer() override { return 36000; }
};

class QuietMessageBox final : public ModalMessage {
 public:
  explicit QuietMessageBox(QuietWorld& world) : world_(world) {}
  void show(std::string_view, std::string_view text) override {
    world_.shown_out_of_memory = text == "UseTorvexDAL error:out of memory";
  }

 private:
  QuietWorld& world_;
};

platform::Platform quiet(QuietWorld& world) {
  return {
      .transport = [&world] { return std::make_shared<QuietTransport>(world); },
      .logger = [&world] { return std::make_shared<QuietLogger>(world); },
      .settings = [] { return std::make_unique<QuietSettings>(); },
      .service_object =
          [&world](std::string_view name) {
            return std::make_shared<QuietServiceObject>(world, name);
          },
      .clock = [] { return std::make_shared<QuietClock>(); },
      .message_box = [&world] { return std::make_shared<QuietMessageBox>(world); },
  };
}

}  // namespace

QuietWorld::QuietWorld(std::string_view reply_text) : reply(reply_text), scope_(quiet(*this)) {
  // The record of exchanges does without what there is no memory for, and fails no call: it has
  // tests of its own.
  session().KeepExchanges(0);
}

}  // namespace bvconn::test
