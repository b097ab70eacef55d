#pragma once

#include <filesystem>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

namespace bvconn::test {

/// A text file of the source tree.
struct SourceFile {
  std::string path;  ///< from the root of the project, with slashes: "bvconn/core/settings.h"
  std::string text;

  bool below(std::string_view folder) const { return path.starts_with(folder); }
  bool is_header() const { return path.ends_with(".h"); }
  bool is_code() const {
    return is_header() || path.ends_with(".cpp") || path.ends_with(".inc") || path.ends_with(".c");
  }
};
using SourceTree = std::vector<SourceFile>;

/// The project's own text files, ordered by path: everything below the rooms and the loose files of
/// the root. Left out is what must keep its exact bytes (data of tests, the fuzzers' corpus).
SourceTree read_source_tree(const std::filesystem::path& root);

/// The text of one file; fails the running test when it cannot be read.
std::string read_text(const std::filesystem::path& path);

/// What the first group of the pattern stands for at each of its places in the text.
std::vector<std::string> all_matches(const std::string& text, const std::regex& pattern);

}  // namespace bvconn::test
