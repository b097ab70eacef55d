#include "support/recording_platform.h"

#include <gtest/gtest.h>

#include "bvconn/testing/world_state.h"

namespace bvconn::test {

RecordingPlatform::RecordingPlatform()
    : TestWorld([](const std::string& problem) { ADD_FAILURE() << problem; }),
      record(state()->record),
      transports_made(state()->transports_made),
      dal_interfaces(state()->interfaces),
      dal_unmakeable(state()->unmakeable),
      settings(state()->settings),
      settings_error(state()->settings_error),
      log_mask(state()->log_mask),
      log_file(state()->log_file),
      tracing_file(state()->tracing_file),
      now(state()->now),
      timer(state()->timer) {
  timer = {100.0};
  state()->answer_otherwise = [this](const SeenCall& call) { return answer(call); };
  state()->on_line = [this](const std::string& line) {
    if (on_line) on_line(line);
    if (log_failure && log_failure->first == line) throw Error(log_failure->second);
  };
}

RecordingPlatform::~RecordingPlatform() {
  state()->answer_otherwise = nullptr;
  state()->on_line = nullptr;
}

void RecordingPlatform::reply(std::string body) {
  next().answers(std::move(body));
}

void RecordingPlatform::fail_send(const Error& error) {
  next().gives(ScriptedAnswer::failure(error, false));
}

void RecordingPlatform::fail_receive(const Error& error) {
  next().gives(ScriptedAnswer::failure(error, true));
}

void RecordingPlatform::note(std::vector<std::string> Record::*list, const std::string& line) {
  state()->note(list, line);
}

std::optional<ScriptedAnswer> RecordingPlatform::answer(const SeenCall& call) {
  if (call.route == ExchangeRoute::kSoap) {
    sent.push_back({call.url, call.text});
    return std::nullopt;
  }
  const std::string name = call.object + "." + call.object_operation;
  if (const auto error = dal_errors.find(name); error != dal_errors.end()) {
    return ScriptedAnswer::failure(error->second, false);
  }
  const auto found = dal_answers.find(name);
  if (found == dal_answers.end()) return std::nullopt;
  return ScriptedAnswer::bytes(found->second);
}

}  // namespace bvconn::test
