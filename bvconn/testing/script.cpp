#include <utility>

#include "bvconn/testing/test_world.h"
#include "bvconn/testing/world_state.h"

namespace bvconn::test {

Script::Script(std::shared_ptr<detail::WorldState> state, std::string_view name)
    : state_(std::move(state)) {
  const std::scoped_lock lock(state_->mutex);
  rule_ = &state_->rules.emplace_back();
  rule_->name = name;
}

Script& Script::with(std::string_view text) {
  const std::scoped_lock lock(state_->mutex);
  rule_->texts.emplace_back(text);
  return *this;
}

Script& Script::replies(std::string_view result) {
  return gives(ScriptedAnswer::reply(result));
}

Script& Script::faults(std::string_view code, std::string_view text) {
  return gives(ScriptedAnswer::fault(code, text));
}

Script& Script::fails(std::int32_t number, std::string_view description) {
  return gives(ScriptedAnswer::failure(number, description));
}

Script& Script::fails(const Error& error) {
  return gives(ScriptedAnswer::failure(error, false));
}

Script& Script::answers(std::string bytes) {
  return gives(ScriptedAnswer::bytes(std::move(bytes)));
}

Script& Script::computes(std::function<ScriptedAnswer(const SeenCall&)> answer) {
  return gives(ScriptedAnswer::computed(std::move(answer)));
}

Script& Script::gives(ScriptedAnswer answer) {
  const std::scoped_lock lock(state_->mutex);
  rule_->answers.push_back(std::move(answer));
  return *this;
}

Script& Script::repeatedly() {
  const std::scoped_lock lock(state_->mutex);
  rule_->stays = true;
  return *this;
}

Script TestWorld::next() {
  return {state_, ""};
}

}  // namespace bvconn::test
