#pragma once

#include <cstdint>
#include <limits>
#include <string_view>

namespace bvconn::detail::xml {

/// The name of an element. `uri` is "" for a name in no namespace.
struct Name {
  std::string_view prefix;
  std::string_view local;
  std::string_view uri;
};

/// An attribute. A namespace declaration is one too, with `kXmlnsUri`: `xmlns:p="u"` has the prefix
/// "xmlns" and the local name "p", `xmlns="u"` no prefix and the local name "xmlns".
struct Attribute {
  std::string_view prefix;
  std::string_view local;
  std::string_view uri;
  std::string_view value;
  bool is_namespace_declaration = false;
};

/// Which start tag an element began with, among those that the reader remembers. The same number
/// stands for the same name and attributes in the same namespaces as long as it `is_known`; where
/// it is not, the reader has read this tag just now, and the number, if it is one, stands for this
/// tag from here on. Numbers count from 0, without gaps.
struct Tag {
  static constexpr std::uint32_t kNoNumber = (std::numeric_limits<std::uint32_t>::max)();
  std::uint32_t number = kNoNumber;
  bool is_known = false;
};

}  // namespace bvconn::detail::xml
