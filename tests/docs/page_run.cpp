#include "docs/page_run.h"

#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "docs/shown.h"

namespace bvconn::test {
namespace {

constexpr std::string_view kPrompt = "$ ";
constexpr std::string_view kNextPrompt = "> ";  // of a line that goes on with the one before

/// One block after another, by one reader.
class Following {
 public:
  void one(const Block& block) {
    block_ = &block;
    if (block.has("not run")) return;
    if (block.has("shows")) compare_file(block.notes.at("shows"));
    if (block.has("part of")) look_into_file(block.notes.at("part of"));
    if (block.has("write")) reader().write(block.notes.at("write"), block.text);
    if (block.has("output")) {
      compare(lines_of(block.text));
    } else if (block.language == "sh") {
      type(block.text, true);
    } else if (block.language == "console") {
      transcript();
    } else if (block.language == "json") {
      parse_json();
    } else if (block.language == "toml") {
      parse_toml();
    }
  }

  PageRun result;

 private:
  Reader& reader() {
    if (!reader_) reader_ = std::make_unique<Reader>();
    return *reader_;
  }

  void complain(const std::string& what) {
    result.complaints.push_back(block_->place() + ": " + what);
  }

  static std::string text_of(const std::string& path) {
    return read_text(std::filesystem::path(BVCONN_SOURCE_DIR) / path);
  }

  void compare_file(const std::string& path) {
    if (block_->text != text_of(path)) complain("is not " + path + " as it stands; copy it");
  }

  void look_into_file(const std::string& path) {
    if (("\n" + text_of(path)).find("\n" + block_->text) == std::string::npos) {
      complain("these lines do not stand in " + path);
    }
  }

  void type(const std::string& commands, bool stops) {
    outcome_.reset();
    if (block_->has("given")) {
      if (!typed(block_->notes.at("given") + "\n", true)) return;
    }
    typed(commands, stops);
  }

  bool typed(const std::string& commands, bool stops) {
    const Reader::Outcome outcome = reader().type(commands, stops);
    if (outcome.status == kProgramMissing) {
      result.missing.push_back(block_->place());
      return false;
    }
    if (stops && outcome.status != 0) {
      complain("ends with " + std::to_string(outcome.status) + ":\n" + commands + outcome.printed);
      return false;
    }
    outcome_ = outcome;
    return true;
  }

  void transcript() {
    std::string commands;
    std::vector<std::string> shown;
    bool goes_on = false;
    bool typed_last = false;
    for (const std::string& line : lines_of(block_->text)) {
      const bool begins = line.starts_with(kPrompt);
      const bool continues = typed_last && line.starts_with(kNextPrompt);
      typed_last = begins || continues || goes_on;
      if (typed_last) {
        commands += line.substr(begins || continues ? kPrompt.size() : 0) + "\n";
        goes_on = line.ends_with('\\');
      } else {
        shown.push_back(line);
      }
    }
    if (commands.empty()) return complain("nothing is typed behind \"$ \"");
    type(commands, false);
    compare(shown);
  }

  // Nothing was printed where a program was missing or a command failed, which is known by then.
  void compare(const std::vector<std::string>& shown) {
    if (!outcome_) return;
    const std::string what = difference(shown, lines_of(outcome_->printed));
    if (!what.empty()) complain(what + "\nAll of it:\n" + outcome_->printed);
  }

  void parse_json() {
    if (nlohmann::json::accept(block_->text)) return;
    for (const std::string& line : lines_of(block_->text)) {
      if (!nlohmann::json::accept(line)) complain("is no JSON: " + line);
    }
  }

  void parse_toml() {
    reader().write("~/.reader/block.toml", block_->text);
    const auto outcome =
        reader().type("BVCONN_USER_SETTINGS=~/.reader/block.toml bvconn settings list\n", true);
    if (outcome.status != 0) complain("is no TOML:\n" + outcome.printed);
  }

  const Block* block_ = nullptr;
  std::unique_ptr<Reader> reader_;
  std::optional<Reader::Outcome> outcome_;
};

}  // namespace

PageRun follow(const std::vector<Block>& blocks) {
  Following following;
  for (const Block& block : blocks) following.one(block);
  return following.result;
}

}  // namespace bvconn::test
