#pragma once

#include <string_view>

namespace bvconn::detail {

inline constexpr std::string_view kEnvelopeUri = "http://schemas.xmlsoap.org/soap/envelope/";
inline constexpr std::string_view kEncodingUri = "http://schemas.xmlsoap.org/soap/encoding/";
inline constexpr std::string_view kXsdUri = "http://www.w3.org/2001/XMLSchema";
inline constexpr std::string_view kXsiUri = "http://www.w3.org/2001/XMLSchema-instance";

// Two drafts of XML Schema that servers of the time still send.
inline constexpr std::string_view kXsdUri2000 = "http://www.w3.org/2000/10/XMLSchema";
inline constexpr std::string_view kXsiUri2000 = "http://www.w3.org/2000/10/XMLSchema-instance";
inline constexpr std::string_view kXsdUri1999 = "http://www.w3.org/1999/XMLSchema";
inline constexpr std::string_view kXsiUri1999 = "http://www.w3.org/1999/XMLSchema-instance";

constexpr bool is_xsd(std::string_view uri) {
  return uri == kXsdUri || uri == kXsdUri1999 || uri == kXsdUri2000;
}
constexpr bool is_xsi(std::string_view uri) {
  return uri == kXsiUri || uri == kXsiUri1999 || uri == kXsiUri2000;
}

/// A qualified name cut at its (last) colon; the prefix is "" where there is none.
struct PrefixedName {
  std::string_view prefix;
  std::string_view local;
};
constexpr PrefixedName split_name(std::string_view name) {
  const auto colon = name.rfind(':');
  if (colon == std::string_view::npos) return {{}, name};
  return {name.substr(0, colon), name.substr(colon + 1)};
}

constexpr bool is_xml_space(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

constexpr std::string_view trim_xml_space(std::string_view text) {
  while (!text.empty() && is_xml_space(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_xml_space(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace bvconn::detail
