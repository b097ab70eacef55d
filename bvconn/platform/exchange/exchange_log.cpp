#include "bvconn/platform/exchange/exchange_log.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "bvconn/platform/error_numbers.h"
#include "bvconn/platform/exchange/mask_exchange.h"

namespace bvconn {
namespace {

// Empties what the last user of a place has left; its texts keep their memory.
void clear(Exchange& exchange) {
  for (BoundedText* text :
       {&exchange.request, &exchange.reply_headers, &exchange.reply, &exchange.result}) {
    text->clear();
  }
  exchange.object.clear();
  exchange.object_operation.clear();
  exchange.http_status = 0;
  exchange.times = {};
  exchange.bytes_sent = 0;
  exchange.bytes_received = 0;
  exchange.outcome = Outcome::kNotSent;
  exchange.error.reset();
  exchange.raised.reset();
}

}  // namespace

void WireFacts::clear() {
  went_out = false;
  http_status = 0;
  reply_headers.clear();
  refused_reply.clear();
  times = {};
  bytes_sent = 0;
  bytes_received = 0;
}

Outcome outcome_by_number(std::int32_t error_number) {
  switch (error_number) {
    case error_numbers::kCannotConnect:
    case error_numbers::kTls:
    case error_numbers::kProxy:
    case error_numbers::kBadUrlOrHeader:
    case error_numbers::kUnknownOption:
      return Outcome::kNotSent;
    default:
      return Outcome::kUnknown;
  }
}

void ExchangeLog::keep(std::size_t count) {
  std::vector<Place> latest;
  latest.resize(static_cast<std::size_t>(std::min<std::uint64_t>(count, count_)));
  for (Place& place : places_) {
    const std::uint64_t number = place.exchange.number;
    if (number == 0 || number + latest.size() <= count_) continue;
    latest[static_cast<std::size_t>((number - 1) % count)] = std::move(place);
  }
  places_ = std::move(latest);
  kept_ = count;
}

std::optional<Exchange> ExchangeLog::last(Secrets secrets) const {
  const auto places = in_order();
  if (places.empty()) return std::nullopt;
  return read(*places.back(), secrets);
}

std::vector<Exchange> ExchangeLog::all(Secrets secrets) const {
  std::vector<Exchange> exchanges;
  for (const Place* place : in_order()) exchanges.push_back(read(*place, secrets));
  return exchanges;
}

void ExchangeLog::listen(Listener listener) {
  listener_ = std::move(listener);
}

void ExchangeLog::enter(Call& call) noexcept {
  call.outer = std::exchange(innermost_, &call);
}

void ExchangeLog::leave(Call& call) noexcept {
  conclude(call);
  innermost_ = call.outer;
}

Exchange* ExchangeLog::begin() noexcept {
  Call& call = running();
  conclude(call);
  call.exchange = ++count_;
  call.outcome = Outcome::kNotSent;
  if (places() == 0) return nullptr;
  const auto at = static_cast<std::size_t>((count_ - 1) % places());
  try {
    if (places_.size() <= at) places_.resize(at + 1);
    Place& place = places_[at];
    Exchange& exchange = place.exchange;
    exchange.number = 0;
    clear(exchange);
    place.arguments = 0;
    place.session_id.assign(call.session_id);
    exchange.cls.assign(call.cls);
    exchange.operation.assign(call.operation);
    exchange.route = call.route;
    exchange.url.assign(call.url);
    exchange.number = count_;
    return &exchange;
  } catch (const std::exception&) {
    return nullptr;
  }
}

// A listener needs a place, also where nothing is kept for later.
std::size_t ExchangeLog::places() const noexcept {
  return listener_ ? std::max<std::size_t>(kept_, 1) : kept_;
}

ExchangeLog::Place* ExchangeLog::place_of(std::uint64_t number) noexcept {
  if (number == 0 || places() == 0) return nullptr;
  const auto at = static_cast<std::size_t>((number - 1) % places());
  return at < places_.size() && places_[at].exchange.number == number ? &places_[at] : nullptr;
}

Exchange* ExchangeLog::find(const Call& call) noexcept {
  Place* place = place_of(call.exchange);
  return place == nullptr ? nullptr : &place->exchange;
}

ExchangeArgument& ExchangeLog::add_argument(Exchange& exchange) {
  Place& place = *place_of(exchange.number);
  if (exchange.arguments.size() <= place.arguments) exchange.arguments.emplace_back();
  ExchangeArgument& argument = exchange.arguments[place.arguments];
  argument.text.clear();
  ++place.arguments;
  return argument;
}

void ExchangeLog::conclude(const Call& call) noexcept {
  if (!listener_) return;
  try {
    const Place* place = place_of(call.exchange);
    if (place != nullptr) listener_(read(*place, Secrets::kMasked));
  } catch (...) {
    // The record is for people who look at it later; the call is not to fail over it.
  }
}

Exchange ExchangeLog::read(const Place& place, Secrets secrets) const {
  Exchange exchange = place.exchange;
  exchange.arguments.resize(place.arguments);
  if (secrets == Secrets::kMasked) mask_exchange(exchange, place.session_id);
  return exchange;
}

std::vector<const ExchangeLog::Place*> ExchangeLog::in_order() const {
  std::vector<const Place*> places;
  for (const Place& place : places_) {
    if (kept_ != 0 && place.exchange.number != 0) places.push_back(&place);
  }
  std::ranges::sort(places, {}, [](const Place* place) { return place->exchange.number; });
  return places;
}

}  // namespace bvconn
