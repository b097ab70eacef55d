#pragma once

#include <string>
#include <string_view>

#include "sandbox/wire/keyed_text.h"

namespace bvconn::test {

using wire::KeyedEntry;
using wire::read_keyed_text;
using wire::trimmed;

/// A claim as a test's name may be: letters, digits and underscores.
std::string test_name(std::string_view claim);

}  // namespace bvconn::test
