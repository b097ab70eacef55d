#include "bvconn/core/session_state.h"

#include "bvconn/core/late_session.h"
#include "bvconn/platform/live_error.h"
#include "bvconn/platform/logging/own_logger.h"
#include "bvconn/platform/thread_record.h"

namespace bvconn {

SessionLogger& SessionState::Logger() {
  if (!logger_) logger_ = platform::current().logger();
  return *logger_;
}

bool SessionState::writes_lines(std::int32_t level) {
  const detail::OwnLogger* own = detail::own_logger_of(Logger());
  return own == nullptr || own->writes(level);
}

bool SessionState::writes_info_lines() {
  const detail::OwnLogger* own = detail::own_logger_of(Logger());
  return own == nullptr || own->writes_info();
}

BVServices& SessionState::Services() {
  if (!services_) services_.emplace();
  return *services_;
}

BVMethods& SessionState::Methods() {
  if (!methods_) methods_.emplace();
  return *methods_;
}

const std::shared_ptr<HTTPTransport>& SessionState::Transport() {
  if (!transport_) transport_ = platform::current().transport();
  return transport_;
}

Clock& SessionState::clock() {
  if (!clock_) clock_ = platform::current().clock();
  return *clock_;
}

std::optional<Exchange> SessionState::LastExchange(Secrets secrets) const {
  return exchanges_.last(secrets);
}

std::vector<Exchange> SessionState::Exchanges(Secrets secrets) const {
  return exchanges_.all(secrets);
}

void SessionState::KeepExchanges(std::size_t count) {
  exchanges_.keep(count);
}

ExchangeLog& SessionState::exchanges() noexcept {
  if (!exchanges_are_shown_) {
    exchanges_are_shown_ = true;
    try {
      const auto& make_listener = platform::current().exchange_listener;
      if (make_listener) exchanges_.listen(make_listener());
    } catch (...) {
      // Who looks at the record later has less of it; the call goes on.
    }
  }
  return exchanges_;
}

SessionState& session() {
  return only_errors([]() -> SessionState& { return detail::ThreadRecord<SessionState>::get(); });
}

void release_late_session() noexcept {
  detail::release_late_records();
}

}  // namespace bvconn
