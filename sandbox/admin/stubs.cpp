#include <nlohmann/json.hpp>
#include <stdexcept>

#include "sandbox/admin/admin.h"
#include "sandbox/endpoints/stubbed.h"
#include "sandbox/stubs/stub_forms.h"

namespace bvconn::sandbox {
namespace {

Reply list_reply(int status, const StubBook::Stubs& stubs) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const auto& each : stubs) list.push_back(to_json(*each));
  constexpr auto kReplace = nlohmann::ordered_json::error_handler_t::replace;
  return json_reply(status, list.dump(2, ' ', false, kReplace) + "\n");
}

}  // namespace

Reply get_stubs(AdminCall& call) {
  expect_query(call, {});
  return list_reply(200, call.sandbox.stubs->all());
}

Reply add_stubs(AdminCall& call) {
  expect_query(call, {});
  try {
    auto rules = stubs_from_text(call.request.body, forms_for_stubs(call.sandbox));
    return list_reply(201, call.sandbox.stubs->add(std::move(rules)));
  } catch (const BadStub& error) {
    throw AdminRefusal{400, error.what()};
  } catch (const std::length_error& error) {
    throw AdminRefusal{409, error.what()};
  }
}

Reply clear_stubs(AdminCall& call) {
  expect_query(call, {});
  call.sandbox.stubs->clear();
  return list_reply(200, {});
}

Reply remove_stub(AdminCall& call) {
  expect_query(call, {});
  if (!call.sandbox.stubs->remove(call.below)) {
    throw AdminRefusal{404, "There is no stub '" + call.below + "'"};
  }
  return list_reply(200, call.sandbox.stubs->all());
}

}  // namespace bvconn::sandbox
