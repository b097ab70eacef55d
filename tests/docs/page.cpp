#include "docs/page.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

namespace bvconn::test {
namespace {

constexpr std::string_view kFence = "```";
constexpr std::string_view kBegin = "<!--";
constexpr std::string_view kEnd = "-->";

std::string trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \n");
  if (begin == std::string_view::npos) return "";
  return std::string(text.substr(begin, text.find_last_not_of(" \n") - begin + 1));
}

/// The comments directly in front of a line, nearest first.
std::map<std::string, std::string> notes_before(const std::vector<std::string>& lines,
                                                std::size_t fence) {
  std::map<std::string, std::string> notes;
  std::size_t end = fence;
  while (end > 0 && lines[end - 1].ends_with(kEnd)) {
    std::size_t begin = end - 1;
    while (begin > 0 && !lines[begin].starts_with(kBegin)) --begin;
    std::string comment;
    for (std::size_t at = begin; at < end; ++at) comment += lines[at] + "\n";
    comment = comment.substr(kBegin.size(), comment.rfind(kEnd) - kBegin.size());
    const std::size_t colon = std::min(comment.find(':'), comment.size());
    notes[trimmed(comment.substr(0, colon))] =
        colon == comment.size() ? "" : trimmed(comment.substr(colon + 1));
    end = begin;
  }
  return notes;
}

bool is_program_text(const Block& block) {
  return block.language == "cpp" || block.language == "c";
}

bool runs(const Block& block) {
  return block.language == "sh" || block.language == "console";
}

}  // namespace

std::vector<Block> blocks_of(std::string_view markdown, const std::string& page) {
  const std::vector<std::string> lines = lines_of(markdown);
  std::vector<Block> blocks;
  std::optional<Block> open;
  for (std::size_t at = 0; at < lines.size(); ++at) {
    if (open && lines[at] == kFence) {
      blocks.push_back(*std::exchange(open, std::nullopt));
    } else if (open) {
      open->text += lines[at] + "\n";
    } else if (lines[at].starts_with(kFence)) {
      open = Block{.page = page,
                   .line = at + 2,
                   .language = lines[at].substr(kFence.size()),
                   .text = "",
                   .notes = notes_before(lines, at)};
    }
  }
  return blocks;
}

std::vector<std::string> pages_with_blocks(const std::filesystem::path& root) {
  std::vector<std::string> pages{"CONTRIBUTING.md", "README.md"};
  for (const auto& entry : std::filesystem::directory_iterator(root / "docs")) {
    if (entry.path().extension() == ".md")
      pages.push_back("docs/" + entry.path().filename().string());
  }
  std::sort(pages.begin(), pages.end());
  return pages;
}

std::string complaint_about(const Block& block) {
  static const std::set<std::string> kKnown{"given",   "write",  "shows",
                                            "part of", "output", "not run"};
  const std::string place = block.place() + ": ";
  for (const auto& [note, argument] : block.notes) {
    if (!kKnown.contains(note)) return place + "nobody knows the note \"" + note + "\"";
    if (argument.empty() && note != "output") return place + "\"" + note + "\" says nothing";
  }
  const bool checked = block.has("write") || block.has("shows") || block.has("part of") ||
                       block.has("output") || block.has("not run");
  if (block.has("not run") && block.notes.size() > 1) return place + "\"not run\" stands alone";
  if (block.has("given") && !runs(block) && !is_program_text(block)) {
    return place + "\"given\" is for commands and C++";
  }
  const bool by_language = runs(block) || block.language == "cpp" || block.language == "json" ||
                           block.language == "toml";
  if (checked || by_language) return "";
  return place +
         "a block that nobody runs; give it a language that is run, or a note in front of it "
         "(CONTRIBUTING.md lists them)";
}

}  // namespace bvconn::test
