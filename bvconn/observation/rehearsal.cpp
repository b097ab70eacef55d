#include "bvconn/observation/rehearsal.h"

#include <memory>
#include <utility>

#include "bvconn/observation/trial.h"
#include "bvconn/observation/world.h"
#include "bvconn/platform/platform.h"

namespace bvconn::automation {
namespace {

/// Settings as they are, into which nothing is written.
class SettingsToRead final : public RegistryAccess {
 public:
  explicit SettingsToRead(std::unique_ptr<RegistryAccess> inner) : inner_(std::move(inner)) {}

  bool Exists(std::string_view path) override { return inner_->Exists(path); }
  void Write(std::string_view, const SettingValue&, std::string_view) override {}
  double ReadNumber(SettingsRoot root, std::string_view key, std::string_view name) override {
    return inner_->ReadNumber(root, key, name);
  }
  std::string ReadString(SettingsRoot root, std::string_view key, std::string_view name) override {
    return inner_->ReadString(root, key, name);
  }

 private:
  std::unique_ptr<RegistryAccess> inner_;
};

}  // namespace

Rehearsal rehearse(const ClassInfo& info, const Member& operation, std::span<const Value> values,
                   bool dal) {
  detail::World world;
  platform::Platform platform = world.platform();
  // What a call would do now, by this machine's time, and with the time-out that is set.
  platform.clock = platform::current().clock;
  platform.settings = [make = platform::current().settings] {
    return std::make_unique<SettingsToRead>(make());
  };
  const platform::ScopedPlatform scope(std::move(platform));
  const detail::Switches switches{.route = dal, .save = dal, .disabled = ""};
  detail::Trial trial = detail::try_call(world, info, operation, values, switches);
  return {.seen = std::move(trial.seen), .raised = std::move(trial.raised)};
}

}  // namespace bvconn::automation
