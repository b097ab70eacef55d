#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The form of files that tell cases by their claims: lines `key: value`, of which indented ones go
/// on with the key above them, and `#` begins a comment line.
namespace bvconn::wire {

struct KeyedEntry {
  int line = 0;  ///< of the file, for messages
  std::string key;
  std::vector<std::string> values;  ///< one for each line, without blanks around them

  /// The lines without anything in between.
  std::string joined() const;
};

/// The entries in their order. What is none is told in `problems`, with its line.
std::vector<KeyedEntry> read_keyed_text(std::string_view text, std::vector<std::string>& problems);

/// Without blanks around it.
std::string_view trimmed(std::string_view text);

}  // namespace bvconn::wire
