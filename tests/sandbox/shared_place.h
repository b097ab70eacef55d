#pragma once

#include <optional>
#include <string>

#include "sandbox/store/store.h"

namespace bvconn::test {

/// A new, empty place for a store that several processes share, as --db takes it: in the database
/// that the program's tests are about. It goes with the program.
std::string new_shared_place();
/// One in which a store has made its tables already.
inline std::string new_place_of_store() {
  std::string place = new_shared_place();
  sandbox::Store(place, std::nullopt);
  return place;
}
/// Why there is none; "" when there is one.
std::string shared_place_missing();

}  // namespace bvconn::test
