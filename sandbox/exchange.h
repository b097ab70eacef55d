#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "bvconn/platform/soap/soap_node.h"
#include "bvconn/platform/soap/variant.h"
#include "sandbox/contract/difference.h"
#include "sandbox/contract/operation_form.h"

namespace bvconn::sandbox {

/// By which way a request came; nothing is known of one that went elsewhere.
enum class Route : std::uint8_t { kNone, kSoap, kDal };

/// "soap", "dal", "" for none.
std::string_view route_text(Route route);

/// What became of a request.
enum class Outcome : std::uint8_t {
  kAnswered,
  kWarned,    ///< answered although it does not fit
  kFault,     ///< by a fault or an error that the operation itself raised
  kRefused,   ///< it cannot be read, does not fit, or nobody may ask so
  kFailed,    ///< the sandbox itself failed
  kInjected,  ///< answered, or not, as a fault that was set on it wants
};

/// "answered", "warned", "fault", "refused", "failed", "injected".
std::string_view outcome_text(Outcome outcome);

/// Whether a name of an operation is meant by another one: by itself, by all of its class as
/// "BVInvoiceConnector.*", or by "*".
bool is_operation(std::string_view name, std::string_view wanted);

/// What lies in one place of a request. Its text is made when somebody asks for it.
class PlaceValue {
 public:
  PlaceValue(SoapNode node) : value_(std::move(node)) {}
  PlaceValue(Variant value) : value_(std::move(value)) {}

  /// The value as people write it: `true` and `false`, plain numbers, the items of an array with
  /// ";" between them, "" for nothing, and the XML of a document.
  std::string text() const;
  /// A node with children that are no items of an array.
  bool is_document() const;

 private:
  std::variant<SoapNode, Variant> value_;
};

/// A request as the sandbox understands it, before it is answered: what faults and stubs match by
/// and what is kept of it. It belongs to the thread that answers.
struct Exchange {
  Route route = Route::kNone;
  /// Namespace of the service and name of the method; on the data access layer object and
  /// operation. Empty where the request could not be read so far.
  std::string service;
  std::string method;
  /// What operations take for the session: the header userID of an envelope; on the data access
  /// layer, without an envelope, the name of the user who logged in.
  std::string session;
  /// The forms of the library's operations that the request can come from. For a request that
  /// fits none, those that it is nearest to.
  std::vector<const OperationForm*> forms;
  /// By place.
  std::vector<PlaceValue> values;
  /// All in which it departs from what the library sends.
  std::vector<Difference> differences;
  Outcome outcome = Outcome::kAnswered;
  /// What answered, where that is not the store: "stub 3", "fault 7".
  std::string answered_by;

  /// Whether it can come from an operation, named as `is_operation` takes it.
  bool can_be(std::string_view operation) const;
  /// The text of an argument by its name in the interface, as "strInvoiceUID"; of several forms
  /// the first that has it. Nothing where the request carries none of this name.
  std::optional<std::string> argument(std::string_view name) const;
};

/// Leaves of several forms those whose constants stand in the request, if there are any.
void narrow_by_constants(Exchange& exchange);

}  // namespace bvconn::sandbox
