#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bvconn/platform/error.h"
#include "bvconn/platform/exchange/exchange.h"
#include "bvconn/platform/exchange/wire_facts.h"
#include "bvconn/platform/export.h"

namespace bvconn {

/// The last exchanges of one thread.
///
/// Writing costs a copy of the texts and, once each place has been used, no memory: nothing is
/// formatted or masked before it is read. What fails in writing (there is no memory) leaves the
/// record incomplete, and never a call.
class BVCONN_EXPORT ExchangeLog {
 public:
  static constexpr std::size_t kKeptByDefault = 8;
  using Listener = std::function<void(const Exchange& masked)>;

  /// Keeps so many from now on, the latest of those that are there; 0 keeps none.
  void keep(std::size_t count);
  std::optional<Exchange> last(Secrets secrets) const;
  /// Oldest first.
  std::vector<Exchange> all(Secrets secrets) const;
  /// Whether nothing is kept or shown: then nothing is written either, and no memory is taken.
  bool is_off() const noexcept { return places() == 0; }
  /// Shows each exchange, masked, when its call has ended. What the listener throws is dropped.
  void listen(Listener listener);

  /// A call of an operation while it runs: what names its exchanges. Calls nest, since the handler
  /// of an event may call.
  struct Call {
    std::string_view cls{};
    std::string_view operation{};
    std::string_view url{};
    std::string_view session_id{};
    ExchangeRoute route = ExchangeRoute::kSoap;
    std::uint64_t exchange = 0;  ///< the number of its latest one; 0 for none yet
    Outcome outcome = Outcome::kNotSent;
    Call* outer = nullptr;
  };

  void enter(Call& call) noexcept;
  void leave(Call& call) noexcept;
  /// The innermost call that runs; a nameless one outside of any.
  Call& running() noexcept { return innermost_ != nullptr ? *innermost_ : nameless_; }

  // Each returns the place to write to, or null where nothing is kept.

  /// Begins an exchange of the running call.
  Exchange* begin() noexcept;
  /// The call's latest exchange.
  Exchange* find(const Call& call) noexcept;
  /// The next argument of an exchange.
  ExchangeArgument& add_argument(Exchange& exchange);

  /// What the transport was last given, by which request ever.
  std::optional<std::string> soap_action;

 private:
  struct Place {
    Exchange exchange;
    std::size_t arguments = 0;  ///< in use; the others keep their memory for later
    std::string session_id;
  };

  std::size_t places() const noexcept;
  Place* place_of(std::uint64_t number) noexcept;
  Exchange read(const Place& place, Secrets secrets) const;
  void conclude(const Call& call) noexcept;
  std::vector<const Place*> in_order() const;

  std::vector<Place> places_;
  std::size_t kept_ = kKeptByDefault;
  std::uint64_t count_ = 0;
  Call* innermost_ = nullptr;
  Call nameless_;
  Listener listener_;
};

}  // namespace bvconn
