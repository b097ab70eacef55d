#include "bvconn/platform/exchange/exchange.h"

#include <algorithm>

namespace bvconn {

std::string_view route_text(ExchangeRoute route) {
  return route == ExchangeRoute::kSoap ? "soap" : "dal";
}

void BoundedText::assign(std::string_view whole) {
  text.assign(whole.substr(0, kKeptTextMax));
  size = whole.size();
}

void BoundedText::append(std::string_view more) {
  text.append(more.substr(0, kKeptTextMax - std::min(kKeptTextMax, text.size())));
  size += more.size();
}

void BoundedText::clear() {
  text.clear();
  size = 0;
}

}  // namespace bvconn
