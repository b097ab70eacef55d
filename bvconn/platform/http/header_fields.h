#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace bvconn::detail {

/// The header lines of a reply, taken apart. They lie one behind another in one text, since a reply
/// has many of them and hardly any is asked for.
class HeaderFields {
 public:
  void add(std::string_view name, std::string_view value);
  void clear();
  /// The value of the last one of this name, whatever its case; "" where there is none. It stands
  /// until the next one is added.
  std::string_view last(std::string_view name) const;

 private:
  struct Field {
    std::uint32_t begin;
    std::uint32_t name_size;
    std::uint32_t value_size;
  };

  std::string text_;
  std::vector<Field> fields_;
};

/// A line or a value of a header without the blanks and line ends around it.
std::string_view trimmed(std::string_view text);

}  // namespace bvconn::detail
