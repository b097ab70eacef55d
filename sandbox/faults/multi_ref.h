#pragma once

#include <string>
#include <string_view>

namespace bvconn::sandbox {

/// The text of an envelope in which every element that has others in it stands beside the method's
/// own element, as a multiRef with an id, and where it was only an href leads to it. `envelope` is
/// what the sandbox itself writes; any other text comes back as it is.
std::string in_multi_ref_form(std::string_view envelope);

/// Where the first text of an envelope's Body can be made longer: before the first end tag in it.
/// In a text that is no envelope at its beginning.
std::size_t place_for_more_text(std::string_view body);

}  // namespace bvconn::sandbox
