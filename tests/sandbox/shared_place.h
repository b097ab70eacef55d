#pragma once

#include <string>

namespace bvconn::test {

/// A new, empty place for a store that several processes share, as --db takes it: in the database
/// that the program's tests are about. It goes with the program.
std::string new_shared_place();
/// Why there is none; "" when there is one.
std::string shared_place_missing();

}  // namespace bvconn::test
