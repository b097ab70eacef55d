#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tools/bvconn/text_lines.h"

namespace bvconn::test {

/// A code block of a page, with the comments in front of it that say how it is treated.
struct Block {
  std::string page;      ///< its path from the root of the project
  std::size_t line = 0;  ///< of the first line of its text, from 1
  std::string language;
  std::string text;  ///< with the end of its last line
  /// "given", "write" and so on, each with what stands behind its colon; see CONTRIBUTING.md.
  std::map<std::string, std::string> notes;

  bool has(const std::string& note) const { return notes.contains(note); }
  std::string place() const { return page + ":" + std::to_string(line); }
};

/// The blocks of a text in Markdown, in their order.
std::vector<Block> blocks_of(std::string_view markdown, const std::string& page);

/// The pages whose blocks are run: paths from the root of the project, in alphabetical order.
std::vector<std::string> pages_with_blocks(const std::filesystem::path& root);

/// What is wrong with how a block says that it is treated; "" for nothing.
std::string complaint_about(const Block& block);

using tool::lines_of;

}  // namespace bvconn::test
