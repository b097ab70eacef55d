#include "failing/throwing_world.h"

#include <memory>
#include <stdexcept>
#include <string>

#include "bvconn/platform/error.h"

namespace bvconn::test {
namespace {

struct Mystery {};

class Logger final : public SessionLogger {
 public:
  explicit Logger(ThrowingWorld& world) : world_(world) {}

  std::string LogFilePath() override {
    world_.step("Logger.LogFilePath");
    return "/dev/null";
  }
  std::int32_t LogMask() override {
    world_.step("Logger.LogMask");
    return 0;
  }
  std::string TracingFilePath() override {
    world_.step("Logger.TracingFilePath");
    return "/dev/null";
  }
  std::uint64_t LogMaxBytes() const override {
    world_.step("Logger.LogMaxBytes");
    return 0;
  }
  void LogError(std::string_view, std::string_view, const Error&, std::int32_t) override {
    world_.step("Logger.LogError");
  }
  void LogWarning(std::string_view, std::string_view, std::string_view, std::int32_t) override {
    world_.step("Logger.LogWarning");
  }
  void LogInfo(std::string_view, std::string_view, std::string_view, std::int32_t) override {
    world_.step("Logger.LogInfo");
  }
  void LogAtLevel(std::int32_t, std::string_view, std::string_view, std::string_view,
                  std::int32_t) override {
    world_.step("Logger.LogAtLevel");
  }
  void EnterMethod(std::string_view, std::string_view, std::int32_t) override {
    world_.step("Logger.EnterMethod");
  }
  void ExitMethod(std::string_view, std::string_view, std::int32_t) override {
    world_.step("Logger.ExitMethod");
  }

 private:
  ThrowingWorld& world_;
};

class Settings final : public RegistryAccess {
 public:
  explicit Settings(ThrowingWorld& world) : world_(world) {}

  bool Exists(std::string_view) override {
    world_.step("Settings.Exists");
    return false;
  }
  void Write(std::string_view, const SettingValue&, std::string_view) override {
    world_.step("Settings.Write");
  }
  double ReadNumber(SettingsRoot, std::string_view, std::string_view) override {
    world_.step("Settings.ReadNumber");
    return 60000;
  }
  std::string ReadString(SettingsRoot root, std::string_view, std::string_view) override {
    const bool user = root == SettingsRoot::kCurrentUser;
    world_.step(user ? "Settings.ReadString (user)" : "Settings.ReadString (machine)");
    return user ? "True" : "8888";
  }

 private:
  ThrowingWorld& world_;
};

class Transport final : public HTTPTransport {
 public:
  explicit Transport(ThrowingWorld& world) : world_(world) {}

  void Option(std::string_view, std::string_view) override { world_.step("Transport.Option"); }
  void setProxy(std::string_view, std::string_view) override { world_.step("Transport.setProxy"); }
  void NoProxy() override { world_.step("Transport.NoProxy"); }
  void SOAPAction(std::string_view) override { world_.step("Transport.SOAPAction"); }
  void Timeout(std::int32_t) override { world_.step("Transport.Timeout"); }
  void Send(std::string_view, std::string_view) override { world_.step("Transport.Send"); }
  std::string Receive(std::string_view) override {
    world_.step("Transport.Receive");
    return std::string(world_.reply());
  }
  std::string LastReply() const override {
    world_.step("Transport.LastReply");
    return "";
  }
  const WireFacts* LastWire() const override {
    world_.step("Transport.LastWire");
    return nullptr;
  }

 private:
  ThrowingWorld& world_;
};

class Service final : public ServiceObject {
 public:
  Service(ThrowingWorld& world, std::string_view name) : world_(world), name_(name) {}

  std::string_view name() const override {
    world_.step("ServiceObject.name");
    return name_;
  }
  std::string invoke(std::string_view, std::span<const Variant>, bool) override {
    world_.step("ServiceObject.invoke");
    return std::string(world_.reply());
  }
  bool offers(std::string_view) const override {
    world_.step("ServiceObject.offers");
    return true;
  }
  const WireFacts* last_wire() const override {
    world_.step("ServiceObject.last_wire");
    return nullptr;
  }

 private:
  ThrowingWorld& world_;
  std::string name_;
};

class StillClock final : public Clock {
 public:
  explicit StillClock(ThrowingWorld& world) : world_(world) {}

  Date now() override {
    world_.step("Clock.now");
    return from_civil({.year = 2007, .month = 1, .day = 5, .hour = 10});
  }
  double timer() override {
    world_.step("Clock.timer");
    return 36000;
  }

 private:
  ThrowingWorld& world_;
};

class Box final : public ModalMessage {
 public:
  explicit Box(ThrowingWorld& world) : world_(world) {}
  void show(std::string_view, std::string_view) override { world_.step("MessageBox.show"); }

 private:
  ThrowingWorld& world_;
};

template <class Made, class... Arguments>
auto maker(ThrowingWorld& world, std::string_view name) {
  return [&world, name](Arguments... arguments) {
    world.step(name);
    return std::make_shared<Made>(world, arguments...);
  };
}

platform::Platform platform_of(ThrowingWorld& world) {
  return {
      .transport = maker<Transport>(world, "Platform.transport"),
      .logger = maker<Logger>(world, "Platform.logger"),
      .settings =
          [&world] {
            world.step("Platform.settings");
            return std::make_unique<Settings>(world);
          },
      .service_object = maker<Service, std::string_view>(world, "Platform.service_object"),
      .clock = maker<StillClock>(world, "Platform.clock"),
      .message_box = maker<Box>(world, "Platform.message_box"),
      .exchange_listener =
          [&world] {
            world.step("Platform.exchange_listener");
            return [&world](const Exchange&) { world.step("the listener"); };
          },
  };
}

}  // namespace

ThrowingWorld::ThrowingWorld(std::string_view reply) : reply_(reply), scope_(platform_of(*this)) {}

void ThrowingWorld::arm(std::size_t number, Thrown thrown) {
  number_ = number;
  steps_ = 0;
  thrown_ = thrown;
  struck_ = "";
}

void ThrowingWorld::step(std::string_view member) {
  if (number_ == 0 || ++steps_ != number_) return;
  struck_ = member;
  switch (thrown_) {
    case Thrown::kError:
      throw Error(kThrownNumber, "the application", "its words");
    case Thrown::kStandard:
      throw std::runtime_error("its words");
    case Thrown::kNumber:
      throw 13;
    case Thrown::kNothing:
      throw Mystery();
  }
}

}  // namespace bvconn::test
