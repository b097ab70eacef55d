#include "docs/fragments.h"

#include <regex>

namespace bvconn::test {
namespace {

bool is_include(const std::string& line) {
  return line.starts_with("#include ");
}

/// A name of the language's for a place, "docs_errors_md_12".
std::string name_of(const Block& block) {
  std::string name = block.page + "_" + std::to_string(block.line);
  for (char& c : name) {
    if (!((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'))) c = '_';
  }
  return name;
}

}  // namespace

std::vector<std::string> missing_from_library(std::string_view messages) {
  static const std::regex kOurs("undefined reference to `((?:[a-z -]+ for )?bvconn::[^']*)'");
  std::vector<std::string> names;
  for (const std::string& line : lines_of(messages)) {
    std::smatch found;
    if (std::regex_search(line, found, kOurs)) names.push_back(found[1]);
  }
  return names;
}

std::string source_of(const std::vector<Block>& fragments) {
  std::string includes = "#include \"docs/given.h\"\n";
  std::string functions;
  for (const Block& block : fragments) {
    const auto given = block.notes.find("given");
    functions += "void " + name_of(block) + "() {\n";
    if (given != block.notes.end()) functions += given->second + "\n";
    functions += "{\n#line " + std::to_string(block.line) + " \"" + block.page + "\"\n";
    for (const std::string& line : lines_of(block.text)) {
      if (is_include(line)) includes += line + "\n";
      functions += (is_include(line) ? "" : line) + "\n";
    }
    functions += "}\n}\n";
  }
  return includes + functions;
}

}  // namespace bvconn::test
