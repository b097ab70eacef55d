#include "dal_login.h"

#include "bvconn/core/session_state.h"
#include "bvconn/platform/error.h"
#include "bvconn/platform/explain.h"
#include "bvconn/platform/http/http_url.h"
#include "call_status.h"
#include "status.h"
#include "target.h"

namespace bvconn::tool {

std::optional<Exchange> log_in_to_dal(const Connection& connection) {
  return log_in_to_dal(connection, connection.password());
}

std::optional<Exchange> log_in_to_dal(const Connection& connection, const std::string& password) {
  const automation::ClassInfo& info = find_class("BVConnectorObject");
  const auto object = info.make();
  const auto set = [&](std::string_view property, const std::string& text) {
    info.find(property)->set(object.get(), Variant(text));
  };
  set("SalesOrg", connection.sales_org.text);
  set("UserName", connection.user.text);
  set("Password", password);
  set("AppVer", connection.app_version.text);
  const auto before = session().LastExchange();
  info.find("InitTorvexDAL")
      ->invoke(object.get(), std::vector<automation::Value>{Variant(connection.dal.text)});
  auto last = session().LastExchange();
  const bool is_new = last && (!before || last->number != before->number);
  if (is_new && last->error) return last;
  info.find("UseTorvexDAL")->invoke(object.get(), {});
  return std::nullopt;
}

std::string login_advice(const Exchange& failure) {
  if (call_status(failure) != kRefused) return explain(recorded_error(failure));
  return "The login is refused. Check the user and the password, and ask those who run the data "
         "access layer whether this user may sign in.";
}

std::string login_failure_text(const Exchange& failure) {
  const ExchangeError error = failure.error.value_or(ExchangeError{});
  std::string text = "the login at " + detail::shown_url(failure.url) + " failed: error ";
  text.append(hex_number(error.number)).append(" (").append(std::to_string(error.number));
  return text.append(") from ").append(error.source).append(": ").append(error.description);
}

}  // namespace bvconn::tool
