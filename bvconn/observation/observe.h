#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "bvconn/automation/interface.h"
#include "bvconn/platform/export.h"

/// What the operations send, as data. None of it is written down anywhere: each operation is run
/// against a world that records what reaches it, with arguments that can be recognised again where
/// they turn up. So it cannot say anything but what the library does.
namespace bvconn::automation {

/// Where the content of a parameter, or of an argument of a service object, comes from.
struct Origin {
  /// The arguments of the operation that it follows, in interface order; none for a constant.
  std::vector<std::string> arguments;
  /// The text of a constant.
  std::string constant;
};

/// A child of the method element.
struct ObservedParameter {
  /// Empty where the caller's own node or text gives the name.
  std::string name;
  std::string name_space;
  /// Local names of the types that it was seen with, "" for none at all.
  std::vector<std::string> types;
  bool may_be_nil = false;
  /// It carries a document, or a value whose type is the caller's choice.
  bool any_content = false;
  Origin origin;
};

/// One form of a request on the SOAP route.
struct ObservedRequest {
  /// Namespace and local name of the method; both empty where the caller names them.
  std::string service;
  std::string method;
  /// Nothing where the operation leaves the header as the last request had it.
  std::optional<std::string> soap_action;
  std::vector<std::string> headers;
  /// Where the content of each header comes from.
  std::vector<Origin> header_origins = {};
  /// Where the address comes from.
  Origin url = {};
  std::vector<ObservedParameter> parameters;
  /// Further parameters follow, as many and with the names that the caller's document has.
  bool open_ended = false;
  /// Where a text among the arguments decides which form is sent: "argument=text", for each that
  /// sends this one.
  std::vector<std::string> cases = {};
  /// What the transport was given, without settings on the machine; nothing where the caller says.
  std::optional<std::int32_t> timeout_ms;
};

/// One form of a call on a service object of the data access layer.
struct ObservedDalCall {
  struct Argument {
    /// Names of the types that it was seen with, as `type_name(Variant::Type)` gives them.
    std::vector<std::string> types;
    /// It passes on a value whose type is the caller's choice.
    bool any_type = false;
    /// It is the text of the whole request that the SOAP route would send.
    bool request_text = false;
    Origin origin;
  };

  std::string object;
  std::string operation;
  /// Looked up at run time, every argument by reference.
  bool by_name = false;
  std::vector<Argument> arguments;
  /// As of a request.
  std::vector<std::string> cases = {};
  /// Which of the operation's requests the SOAP route sends in place of it, the usual one first;
  /// none for what the data access layer alone serves.
  std::vector<std::size_t> requests;
};

struct ObservedOperation {
  std::string cls;
  std::string name;
  /// Its forms, the usual one first; none for an operation that sends nothing.
  std::vector<ObservedRequest> requests;
  std::vector<ObservedDalCall> dal_calls;
};

/// Observes one operation. It runs on a thread of its own, and while it does the process's platform
/// is replaced: no other thread may be inside the library.
BVCONN_EXPORT ObservedOperation observe(const ClassInfo& info, const Member& operation);

/// Observes all operations of all classes, in the order of the interface.
BVCONN_EXPORT std::vector<ObservedOperation> observe_all();

}  // namespace bvconn::automation
