#include "tree/source_tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <string_view>

namespace bvconn::test {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 11> kFolders{"bvconn",   "tools", "sandbox",  "tests",
                                                    "examples", "docs",  "bench",    "fuzz",
                                                    "cmake",    ".ci",   "packaging"};
constexpr std::array<std::string_view, 11> kTextEndings{
    ".h", ".c", ".cpp", ".inc", ".md", ".txt", ".cmake", ".sh", ".py", ".json", ".in"};

bool is_text(const fs::path& path) {
  const std::string name = path.filename().string();
  // Tasks and scripts have no ending.
  if (name.find('.') == std::string::npos) return true;
  return std::any_of(kTextEndings.begin(), kTextEndings.end(),
                     [&](std::string_view ending) { return name.ends_with(ending); });
}

bool keeps_its_bytes(const fs::path& folder) {
  const std::string name = folder.filename().string();
  return name == "data" || name == "corpus" || name == "__pycache__";
}

}  // namespace

std::string read_text(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << "cannot read " << path;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> all_matches(const std::string& text, const std::regex& pattern) {
  std::vector<std::string> found;
  for (std::sregex_iterator at(text.begin(), text.end(), pattern), end; at != end; ++at) {
    found.push_back((*at)[1]);
  }
  return found;
}

SourceTree read_source_tree(const fs::path& root) {
  SourceTree tree;
  const auto take = [&](const fs::path& path) {
    tree.push_back({fs::relative(path, root).generic_string(), read_text(path)});
  };
  for (const auto& entry : fs::directory_iterator(root)) {
    if (entry.is_regular_file() && is_text(entry.path())) take(entry.path());
  }
  for (const auto folder : kFolders) {
    if (!fs::is_directory(root / folder)) continue;
    fs::recursive_directory_iterator walk(root / folder);
    for (const auto& entry : walk) {
      if (entry.is_directory() && keeps_its_bytes(entry.path())) {
        walk.disable_recursion_pending();
      } else if (entry.is_regular_file() && is_text(entry.path())) {
        take(entry.path());
      }
    }
  }
  std::sort(tree.begin(), tree.end(),
            [](const SourceFile& a, const SourceFile& b) { return a.path < b.path; });
  return tree;
}

}  // namespace bvconn::test
