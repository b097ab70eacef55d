#pragma once

#include <string>
#include <string_view>

#include "json_value.h"

/// A line of a batch, taken apart.
namespace bvconn::tool {

/// The text without the blanks around it.
std::string_view trimmed(std::string_view text);

/// The one verb of a request. @throws UsageError  for none, for two, and for keys that do not
/// belong to it.
std::string verb_of(const JsonValue& request);

/// A member that has to be a string. @throws UsageError
const std::string& text_member(const JsonValue& request, const char* key);

/// The text of a member of a JSON object as it was written; "null" where there is none. Where the
/// object is not well-formed, some part of it.
std::string_view raw_member(std::string_view object, std::string_view key);

}  // namespace bvconn::tool
