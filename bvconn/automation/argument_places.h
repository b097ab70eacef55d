#pragma once

#include <cstddef>
#include <initializer_list>
#include <limits>
#include <string_view>
#include <tuple>

#include "bvconn/connectors/documents/bv_acknowledgement_connector.h"
#include "bvconn/connectors/documents/bv_order_connector.h"
#include "bvconn/connectors/documents/bv_project_connector.h"
#include "bvconn/connectors/documents/bv_quote_connector.h"
#include "bvconn/connectors/documents/bv_request_for_quote_connector.h"
#include "bvconn/connectors/documents/bv_rma_connector.h"
#include "bvconn/connectors/documents/bv_sales_instrument_connector.h"
#include "bvconn/connectors/documents/bv_submittal_connector.h"
#include "bvconn/connectors/invoice/bv_invoice_connector.h"
#include "bvconn/connectors/maintenance/bv_maintenance_connector.h"
#include "bvconn/connectors/print/bv_print_connector.h"
#include "bvconn/connectors/search/bv_search_connector.h"
#include "bvconn/connectors/session/bv_config_connector.h"
#include "bvconn/connectors/session/bv_document_connector.h"
#include "bvconn/connectors/session/bv_export_connector.h"
#include "bvconn/connectors/session/bv_generic_connector.h"
#include "bvconn/connectors/session/bv_heart_beat_connector.h"
#include "bvconn/connectors/session/bv_postal_connector.h"
#include "bvconn/connectors/session/bv_summary_connector.h"

/// Where among an operation's arguments `aServerURL` and `aSessionID` stand, as the compiler knows
/// it: from the same rows as the interface by name.
namespace bvconn::automation::detail {

inline constexpr std::size_t kNoPlace = (std::numeric_limits<std::size_t>::max)();

/// An operation's arguments by their places. Its own are all but server and session.
struct ArgumentPlaces {
  std::size_t count = 0;
  std::size_t server = kNoPlace;
  std::size_t session = kNoPlace;
  /// What stands for a session that is left out; null where none may be.
  const char* without_session = nullptr;
  /// How many of its own cannot be left out.
  std::size_t required = 0;
  /// Whether all the others have the default of their type.
  bool plain_defaults = true;

  constexpr std::size_t own() const { return count - (server < count) - (session < count); }
  /// The place of one of its own among all.
  constexpr std::size_t place_of_own(std::size_t index) const {
    for (std::size_t place = 0; place < count; ++place) {
      if (place == server || place == session) continue;
      if (index-- == 0) return place;
    }
    return kNoPlace;
  }
};

/// One argument as its row writes it.
struct WrittenArgument {
  constexpr WrittenArgument(const char* written, const char* default_value = nullptr)
      : name(written), default_text(default_value) {
    if (!name.ends_with('?')) return;
    optional = true;
    name.remove_suffix(1);
  }

  std::string_view name;
  const char* default_text;
  bool optional = false;
};

constexpr ArgumentPlaces places_of(std::initializer_list<WrittenArgument> arguments) {
  ArgumentPlaces places;
  std::size_t own = 0;
  for (const WrittenArgument& argument : arguments) {
    const std::size_t place = places.count++;
    if (argument.name == "aServerURL") {
      places.server = place;
    } else if (argument.name == "aSessionID") {
      places.session = place;
      if (argument.optional) places.without_session = argument.default_text;
    } else {
      ++own;
      if (!argument.optional) places.required = own;
      if (argument.optional && argument.default_text != nullptr) places.plain_defaults = false;
    }
  }
  return places;
}

/// A pointer to an operation as a type of its own.
template <auto operation>
struct Pointer {};

/// The places of all operations of one class.
template <class C>
struct RowsOf;

// The fields of an aggregate are one argument, which may be left out where all of them may.
#define BVCONN_CLASS(name, function) \
  template <>                        \
  struct RowsOf<name> {              \
    using C = name;
#define BVCONN_ROW(name, ...)                             \
  static constexpr ArgumentPlaces of(Pointer<&C::name>) { \
    return places_of({__VA_ARGS__});                      \
  }
#define BVCONN_ROW_READ_ONLY(name)
#define BVCONN_ROW_EVENT(name)
#define BVCONN_ROW_OPTIONAL(...) "?"
#define BVCONN_ROW_REQUIRED(...) ""
#define BVCONN_CLASS_END \
  }                      \
  ;
#include "bvconn/automation/classes/connector_rows.inc"

/// What a pointer to an operation says about it.
template <class Function>
struct OperationType;

template <class R, class C, class... A>
struct OperationType<R (C::*)(A...)> {
  using Result = R;
  using Class = C;
  using Arguments = std::tuple<A...>;
  static constexpr std::size_t kCount = sizeof...(A);
};

template <auto operation>
using TypeOf = OperationType<decltype(operation)>;

template <auto operation, std::size_t place>
using ArgumentOf = std::tuple_element_t<place, typename TypeOf<operation>::Arguments>;

/// Whether this is a pointer to an operation of a connector.
template <auto operation>
concept IsOperation = requires {
  RowsOf<typename TypeOf<operation>::Class>::of(Pointer<operation>());
};

template <auto operation>
inline constexpr ArgumentPlaces kPlaces =
    RowsOf<typename TypeOf<operation>::Class>::of(Pointer<operation>());

}  // namespace bvconn::automation::detail
