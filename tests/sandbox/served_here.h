#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "sandbox/contract/observed.h"
#include "sandbox/endpoints/endpoints.h"
#include "sandbox/http/server.h"
#include "sandbox/journal/journal.h"
#include "sandbox/raw_client.h"

namespace bvconn::test {

/// What the program serves, with a journal, in this process.
class ServedHere {
 public:
  explicit ServedHere(sandbox::JournalLimits journal = {}) {
    sandbox_->journal = std::make_shared<sandbox::MemoryJournal>(journal);
    for (const auto& each : observations_) {
      sandbox_->operation_names.push_back(sandbox::operation_name(each));
    }
    thread_ = std::thread([this] { server_.run(); });
  }
  ~ServedHere() {
    server_.finish();
    thread_.join();
  }
  ServedHere(const ServedHere&) = delete;
  ServedHere& operator=(const ServedHere&) = delete;

  std::uint16_t port() const { return server_.port(); }

 private:
  std::vector<automation::ObservedOperation> observations_ = automation::observe_all();
  // On the heap: GCC 12 warns of members that are made up in place.
  const std::unique_ptr<sandbox::ServedSandbox> sandbox_{new sandbox::ServedSandbox{
      {.stores = sandbox::Stores(":memory:", std::nullopt),
       .contract = sandbox::Contract(sandbox::contract_of(observations_)),
       .dal_routes = sandbox::dal_routes_of(observations_)}}};
  const sandbox::Operations operations_ = sandbox::all_operations();
  sandbox::Server server_{sandbox::Listening{}, sandbox::Limits{},
                          [this](const sandbox::Request& request) {
                            return sandbox::answer(*sandbox_, operations_, request);
                          }};
  std::thread thread_;
};

/// A call on the SOAP route as a whole request.
inline std::string soap_call(const std::string& service, const std::string& method,
                             const std::string& parameters, const std::string& headers = "") {
  return http_request(
      "POST", "/soap",
      "Content-Type: text/xml; charset=utf-8\r\nSOAPAction: \"" + service + "\"\r\n" + headers,
      "<E:Envelope xmlns:E=\"http://schemas.xmlsoap.org/soap/envelope/\""
      " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
      " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\"><E:Header><userID>S1</userID></E:Header>"
      "<E:Body><m:" +
          method + " xmlns:m=\"" + service + "\">" + parameters + "</m:" + method +
          "></E:Body></E:Envelope>");
}

}  // namespace bvconn::test
