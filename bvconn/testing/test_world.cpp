#include "bvconn/testing/test_world.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <utility>

#include "bvconn/testing/world_state.h"

namespace bvconn::test {

TestWorld::TestWorld(Reporter reporter)
    : state_(std::make_shared<detail::WorldState>()), scope_(detail::platform_over(state_)) {
  state_->report = std::move(reporter);
  // Few tests are about this setting; it stands there as the application leaves it.
  set_setting(R"(HKCU\Software\Brimvale\Torvex\AppData\TraceSoapTraffic)", "False");
}

TestWorld::~TestWorld() {
  state_->conclude();
  std::size_t untold = 0;
  {
    const std::scoped_lock lock(state_->mutex);
    state_->is_over = true;
    untold = state_->problems.size() - state_->problems_seen;
  }
  if (untold == 0) return;
  for (const std::string& problem : state_->problems) {
    std::fprintf(stderr, "TestWorld: %s\n", problem.c_str());
  }
  // On the way out of a failed test, that failure is the one to be seen.
  if (std::uncaught_exceptions() == 0) std::abort();
}

std::vector<SeenCall> TestWorld::calls() const {
  const std::scoped_lock lock(state_->mutex);
  return state_->calls;
}

std::vector<SeenCall> TestWorld::calls(std::string_view name) const {
  std::vector<SeenCall> found = calls();
  std::erase_if(found, [&](const SeenCall& call) { return !call.is(name); });
  return found;
}

SeenCall TestWorld::last_call() const {
  const std::scoped_lock lock(state_->mutex);
  if (state_->calls.empty()) throw std::out_of_range("TestWorld: nothing was called yet");
  return state_->calls.back();
}

Record TestWorld::record() const {
  const std::scoped_lock lock(state_->mutex);
  return state_->record;
}

void TestWorld::forget_what_was_seen() {
  const std::scoped_lock lock(state_->mutex);
  state_->calls.clear();
  state_->record.clear();
}

std::vector<std::string> TestWorld::problems() {
  const std::scoped_lock lock(state_->mutex);
  state_->problems_seen = state_->problems.size();
  return state_->problems;
}

void TestWorld::verify() {
  state_->conclude();
  std::string text;
  for (const std::string& problem : problems()) text.append("\n").append(problem);
  if (!text.empty()) throw std::logic_error("TestWorld:" + text);
}

void TestWorld::use_dal() {
  detail::use_service_objects(state_);
}

void TestWorld::set_setting(std::string_view path, SettingValue value) {
  const std::scoped_lock lock(state_->mutex);
  state_->settings[detail::small_letters(path)] = std::move(value);
}

std::optional<SettingValue> TestWorld::setting(std::string_view path) const {
  const std::scoped_lock lock(state_->mutex);
  const auto found = state_->settings.find(detail::small_letters(path));
  if (found == state_->settings.end()) return std::nullopt;
  return found->second;
}

void TestWorld::fail_settings(const Error& error) {
  const std::scoped_lock lock(state_->mutex);
  state_->settings_error = error;
}

void TestWorld::set_log_mask(std::int32_t mask) {
  const std::scoped_lock lock(state_->mutex);
  state_->log_mask = mask;
}

void TestWorld::set_log_file(std::string_view path) {
  const std::scoped_lock lock(state_->mutex);
  state_->log_file = path;
}

void TestWorld::set_now(Date now) {
  const std::scoped_lock lock(state_->mutex);
  state_->now = now;
}

Date TestWorld::now() const {
  const std::scoped_lock lock(state_->mutex);
  return state_->now;
}

void TestWorld::advance(std::chrono::milliseconds time) {
  const std::scoped_lock lock(state_->mutex);
  state_->now.milliseconds += time.count();
}

}  // namespace bvconn::test
