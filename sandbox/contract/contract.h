#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/contract/difference.h"
#include "sandbox/contract/operation_form.h"

/// What a request has to look like. A contract is fed with data; where the data come from is not
/// its business.
namespace bvconn::sandbox {

struct ParameterContract {
  /// Empty where the caller's document gives the name.
  std::string name;
  std::string name_space{};
  /// The local names of the types that it may have, "" for none at all. An empty list allows any
  /// type, content and namespace: a place that carries a document or a value of the caller's
  /// choice.
  std::vector<std::string> types;
  bool may_be_nil = false;
};

/// One way in which a method may be called. Parameters stand in their order.
struct RequestShape {
  std::vector<ParameterContract> parameters;
  /// Further parameters may follow, whatever they are.
  bool open_ended = false;
  /// Which operation of the library asks like this.
  OperationForm form{};
};

struct MethodContract {
  std::string service;
  std::string name;
  std::vector<std::string> headers;
  /// The values that SOAPAction may have.
  std::vector<std::string> soap_actions;
  /// Some operation leaves the header as the last request had it, so that nothing can be expected.
  bool any_soap_action = false;
  /// A request fits when it fits one of them.
  std::vector<RequestShape> shapes;
};

/// The facts of a request that a contract looks at.
struct RequestFacts {
  struct Parameter {
    std::string name;
    std::string name_space{};
    std::string type;  ///< local name of its xsi:type, "" where it has none
    bool nil = false;
  };

  std::string service;
  std::string method;
  std::optional<std::string> soap_action;  ///< without quotes; nothing where there is no header
  std::vector<std::string> headers;
  std::vector<Parameter> parameters;
};

/// What the contract says of a request.
struct Verdict {
  /// The forms whose parameters the request has; where it has none's, those that it is nearest to.
  /// They live as long as the contract.
  std::vector<const OperationForm*> forms;
  /// All that differs from the nearest form; nothing for a request that fits.
  std::vector<Difference> differences;
  /// What was asked for, "getInvoice in urn:InvoiceService"; "" where there is no such method.
  std::string subject{};

  /// What is wrong and what was expected, or nothing for a request that fits: "getInvoice in
  /// urn:InvoiceService: parameter 1 is named 'UID', expected 'param'; 1 more difference".
  std::optional<std::string> complaint() const;
};

class Contract {
 public:
  explicit Contract(std::vector<MethodContract> methods);

  Verdict judge(const RequestFacts& request) const;
  /// The same without a look at SOAPAction, which the text of a request does not have.
  Verdict judge_envelope(const RequestFacts& request) const;
  /// Of all requests that there are. They live as long as the contract.
  std::vector<const OperationForm*> forms() const;

 private:
  const MethodContract* find(std::string_view service, std::string_view name) const;
  Difference unknown_method(const RequestFacts& request) const;
  Verdict judge(const RequestFacts& request, bool with_action) const;

  std::vector<MethodContract> methods_;
};

}  // namespace bvconn::sandbox
