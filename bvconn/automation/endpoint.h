#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "bvconn/automation/argument_places.h"
#include "bvconn/platform/soap/variant.h"

namespace bvconn {

/// Where calls go, and in whose session.
struct Endpoint {
  std::string url{};
  std::string session{};
};

namespace automation::detail {

/// What stands for an argument of an operation's own that was left out.
template <class T>
T left_out() {
  if constexpr (std::is_same_v<T, Variant>) {
    return Variant::Missing();
  } else {
    return T{};
  }
}

/// The argument at a place of an operation that was given this endpoint and these arguments of its
/// own.
template <auto operation, std::size_t place, class Own>
decltype(auto) argument_at(const Endpoint& endpoint, const Own& own) {
  constexpr ArgumentPlaces places = kPlaces<operation>;
  constexpr std::size_t index = place - (places.server < place) - (places.session < place);
  using Argument = ArgumentOf<operation, place>;
  if constexpr (place == places.server) {
    static_assert(std::is_same_v<Argument, std::string_view>);
    return std::string_view(endpoint.url);
  } else if constexpr (place == places.session) {
    static_assert(std::is_same_v<Argument, std::string_view>);
    std::string_view session = endpoint.session;
    if constexpr (places.without_session != nullptr) {
      if (session.empty()) session = places.without_session;
    }
    return session;
  } else if constexpr (index < std::tuple_size_v<Own>) {
    return std::get<index>(own);
  } else {
    return left_out<std::remove_cvref_t<Argument>>();
  }
}

/// An operation with so many arguments of its own. They have its very types, so that braces and
/// conversions work as in a call of it, and the compiler names the one that does not fit.
template <auto operation, class Indices>
struct EndpointCall;

template <auto operation, std::size_t... index>
struct EndpointCall<operation, std::index_sequence<index...>> {
  using Type = TypeOf<operation>;

  typename Type::Result operator()(
      const Endpoint& endpoint, typename Type::Class& connector,
      ArgumentOf<operation, kPlaces<operation>.place_of_own(index)>... own) const {
    return run(endpoint, connector, std::tie(own...), std::make_index_sequence<Type::kCount>());
  }

 private:
  template <class Own, std::size_t... place>
  static typename Type::Result run(const Endpoint& endpoint, typename Type::Class& connector,
                                   const Own& own, std::index_sequence<place...>) {
    return (connector.*operation)(argument_at<operation, place>(endpoint, own)...);
  }
};

/// An operation with all its arguments, and with each number of them that it can be left with.
template <auto operation, class LeftOut>
struct EndpointCalls;

template <auto operation, std::size_t... left_out>
struct EndpointCalls<operation, std::index_sequence<left_out...>>
    : EndpointCall<operation, std::make_index_sequence<kPlaces<operation>.own() - left_out>>... {
  static constexpr ArgumentPlaces kOf = kPlaces<operation>;
  static_assert(kOf.count == TypeOf<operation>::kCount, "its row names each of its arguments");
  static_assert(kOf.count == 0 || kOf.server != kNoPlace, "its row names the server's address");
  static_assert(kOf.plain_defaults, "what it takes for an argument that is left out is its type's");

  using EndpointCall<operation,
                     std::make_index_sequence<kPlaces<operation>.own() - left_out>>::operator()...;
};

template <auto operation>
using AllEndpointCalls =
    EndpointCalls<operation, std::make_index_sequence<kPlaces<operation>.own() -
                                                      kPlaces<operation>.required + 1>>;

}  // namespace automation::detail

/// Calls an operation of a connector with server and session in front, in one piece, whatever the
/// order in its own interface: the two cannot be swapped with each other or with a key.
///
///     const bvconn::Endpoint office{.url = url, .session = session};
///     bvconn::BVSearchConnector search;
///     call<&bvconn::BVSearchConnector::SearchForOrders>(office, search, {.OrderNbr = "4711"});
///
/// All else is as in a call of the operation itself: its other arguments in their order, those at
/// the end left out where they may be, its result, its errors. An operation that knows no session
/// is given none; `BVGenericConnector::Send` leaves out one that is "".
template <auto operation>
requires automation::detail::IsOperation<operation>
inline constexpr automation::detail::AllEndpointCalls<operation> call{};

}  // namespace bvconn
