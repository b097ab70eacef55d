#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/variant.h"
#include "sandbox/store/store.h"

/// What the server can do: the operations by their names on the two routes. Each family of them has
/// a source of its own that adds its rows.
namespace bvconn::sandbox {

/// Thrown by an operation: the answer is a SOAP fault with this code.
struct Fault {
  std::string code;  ///< a number of the server's own, or a qualified name such as SOAP-ENV:Client
  std::string text;
  /// Elements of the fault's detail, name and text.
  std::vector<std::pair<std::string, std::string>> detail{};
};

namespace fault_codes {
inline constexpr const char* kClient = "SOAP-ENV:Client";
inline constexpr const char* kServer = "SOAP-ENV:Server";
inline constexpr const char* kVersionMismatch = "SOAP-ENV:VersionMismatch";
}  // namespace fault_codes

/// Throws the fault of a client that asks for something wrong; its detail repeats the words.
[[noreturn]] void refuse(const std::string& text);

/// Thrown by an operation of the data access layer: the answer is an error in JSON.
struct DalError {
  int status;
  std::int32_t number;
  std::string source;
  std::string description;
};

/// The numbers of the sandbox's own DAL errors.
namespace dal_numbers {
inline constexpr std::int32_t kBadRequest = static_cast<std::int32_t>(0x80044E20);
inline constexpr std::int32_t kLoginRefused = static_cast<std::int32_t>(0x80044E21);
inline constexpr std::int32_t kNotLoggedIn = static_cast<std::int32_t>(0x80044E22);
inline constexpr std::int32_t kNoSuchOperation = static_cast<std::int32_t>(0x80044E23);
inline constexpr std::int32_t kInternal = static_cast<std::int32_t>(0x80044E24);
}  // namespace dal_numbers

/// A call that has passed the contract. Results are appended to `results`, the children of the
/// reply's method element.
struct SoapCall {
  Store& store;
  std::string_view user_id;
  SoapNodes parameters;
  SoapNodes results;
};

using Method = std::function<void(SoapCall&)>;

/// A method as it is called.
struct ServedMethod {
  Method run;
  /// The transaction in which it runs, which a fault rolls back; none for what needs no store.
  std::optional<Turn> turn{};
};

/// A call that begins or belongs to a session of the data access layer itself.
struct SessionCall {
  Store& store;
  const std::vector<Variant>& arguments;  ///< of the number and the types that the library passes
};

struct DalAnswer {
  std::string text;
  /// Sent back as Session-Token where there is one.
  std::string token{};
};

struct SessionOperation {
  std::function<DalAnswer(SessionCall&)> run;
  bool needs_login = true;
  Turn turn = Turn::kStore;
};

struct Operations {
  using Name = std::pair<std::string, std::string>;  ///< service and method, object and operation

  /// The methods of the services. Calls of the data access layer lead here as well.
  std::map<Name, ServedMethod> soap;
  /// The few operations that the data access layer alone serves. Their parameters are the
  /// arguments, each under its name.
  std::map<Name, ServedMethod> dal_alone;
  /// Those of the data access layer's own session, which answer no envelope.
  std::map<Name, SessionOperation> session;
};

/// A method of a service. It runs within a transaction, whose turn its name tells.
void add_method(Operations& operations, const std::string& service, const std::string& name,
                Method method);
/// An operation that the data access layer alone serves; it runs within a transaction as well.
void add_dal_method(Operations& operations, const std::string& object, const std::string& operation,
                    Method method);

void add_authentication(Operations& operations);
void add_heart_beat(Operations& operations);
void add_invoices(Operations& operations);
/// Projects, quotes, orders, requests for quote, acknowledgements, submittals and returns.
void add_documents(Operations& operations);
void add_reconciles(Operations& operations);
void add_commissions(Operations& operations);
/// Paragraphs and remarks.
void add_texts(Operations& operations);
/// What a user and his agent keep: logo, password, profile, defaults of printouts.
void add_maintenance(Operations& operations);
void add_printing(Operations& operations);
void add_summaries(Operations& operations);
/// Countries, exports, the documents of an object, configured products.
void add_session_services(Operations& operations);
/// Lists, look-ups, searches, templates and what stands beside them.
void add_searches(Operations& operations);

Operations all_operations();

}  // namespace bvconn::sandbox
