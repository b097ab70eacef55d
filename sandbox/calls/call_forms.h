#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/automation/interface.h"
#include "bvconn/observation/observe.h"

namespace bvconn::sandbox {

/// An operation that can be called by a form: one of a connector.
struct CallForm {
  std::string name;  ///< "BVInvoiceConnector.GetInvoice"
  const automation::ClassInfo* info = nullptr;
  const automation::Member* member = nullptr;
  bool by_soap = false;
  bool by_dal = false;
};

/// The argument that is the server's address; a form leaves it to the sandbox.
inline constexpr std::string_view kServerArgument = "aServerURL";

/// Of the operations of all connectors, in the order of the interface.
std::vector<CallForm> call_forms(const std::vector<automation::ObservedOperation>& observations);

/// `operation`, `result`, `routes`, and `arguments` with `name`, `type`, `optional` and `default`.
nlohmann::ordered_json form_json(const CallForm& form);

}  // namespace bvconn::sandbox
