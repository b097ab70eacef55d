#pragma once

#include <nlohmann/json.hpp>
#include <string>

/// JSON as people state it in call files.
namespace bvconn::test {

using Json = nlohmann::json;

/// Reads it, with `{3 times ab}` written out as ababab.
Json read_stated(const std::string& text);

/// What is stated, with the parts of the other value in the places that it leaves open: what
/// `{any}` stands for in a text, and namespaces that it does not state, since results are taken by
/// local names and each stack has namespaces of its own liking for them. To be compared as text, in
/// which 2 and 2.0 differ.
Json filled_in(Json stated, const Json& actual);

}  // namespace bvconn::test
