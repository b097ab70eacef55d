#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "bvconn/platform/exchange/wire_facts.h"
#include "bvconn/platform/export.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn {

/// One service object of the data access layer. Its operations are called by name; each gives back
/// the text of a whole SOAP response (those without a result give "").
class BVCONN_EXPORT ServiceObject {
 public:
  virtual ~ServiceObject();

  /// The name of the object, for instance "SearchService".
  virtual std::string_view name() const = 0;
  /// Runs an operation. `by_name` tells that the caller looks the operation up at run time and
  /// passes every argument by reference.
  virtual std::string invoke(std::string_view operation, std::span<const Variant> arguments,
                             bool by_name) = 0;
  /// Whether the object also offers the interface of another service object.
  virtual bool offers(std::string_view interface_name) const = 0;
  /// What else the last `invoke` showed, for the record of exchanges; it stands until the next one.
  /// An object of one's own need not say: null.
  virtual const WireFacts* last_wire() const;
};

/// A service object that speaks to the data access layer over HTTP, see docs/dal-http.md. The
/// objects of one thread share one connection and one login.
BVCONN_EXPORT std::shared_ptr<ServiceObject> make_http_service_object(std::string_view name);

}  // namespace bvconn
