#include "bvconn/platform/settings/toml_check.h"

#include <algorithm>
#include <vector>

namespace bvconn::detail {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool begins_key(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '-' || c == '"' || c == '\'';
}

/// Follows tables, keys and brackets through TOML text without recursion. Strings and comments are
/// skipped; everything else is looked at as little as counting takes.
class TroubleFinder {
 public:
  explicit TroubleFinder(std::string_view toml)
      : toml_(toml), at_(toml.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0) {}

  std::optional<TomlTrouble> find() {
    while (at_ < toml_.size()) {
      const std::size_t begin = at_;
      if (is_header_without_key()) {
        return TomlTrouble{position(begin), "a table's header begins with no key"};
      }
      if ((static_cast<unsigned char>(toml_[at_]) & 0x80) != 0) {
        return TomlTrouble{position(begin), "a letter beyond ASCII stands outside quotation marks"};
      }
      step();
      if (depth() > kDeepestToml) {
        return TomlTrouble{position(begin),
                           "it nests deeper than " + std::to_string(kDeepestToml) + " levels"};
      }
    }
    return std::nullopt;
  }

 private:
  enum class Place { kStart, kHeader, kKey, kValue };
  /// What a bracket that is open lies in: at its end all of it holds again.
  struct Outside {
    Place place;
    std::size_t key_parts;
  };

  /// Whether what stands here is neither the key of the header that has begun nor its end, about
  /// which the reader has words of its own.
  bool is_header_without_key() {
    if (place_ != Place::kHeader || !header_awaits_key_) return false;
    const char c = toml_[at_];
    if (c == ' ' || c == '\t' || c == '[') return false;
    header_awaits_key_ = false;
    return !begins_key(c) && c != ']';
  }

  std::size_t depth() const { return header_parts_ + key_parts_ + outer_parts_ + open_.size(); }

  void step() {
    const char c = toml_[at_];
    if (place_ == Place::kStart) return start(c);
    if (c == '"' || c == '\'') return skip_string(c);
    if (c == '#') return skip_comment();
    ++at_;
    if (c == '\n' && open_.empty()) return end_line();
    if (place_ == Place::kHeader) {
      if (c == '.' || c == '[') ++header_parts_;
    } else if (place_ == Place::kKey) {
      if (c == '.') ++key_parts_;
      if (c == '=') place_ = Place::kValue;
      if (c == '}') close();
    } else {
      value(c);
    }
  }

  void start(char c) {
    if (c == '#') return skip_comment();
    if (c == '[') {
      place_ = Place::kHeader;
      header_parts_ = 0;
      header_awaits_key_ = true;
    } else if (c != ' ' && c != '\t' && c != '\r' && c != '\n') {
      place_ = Place::kKey;
      key_parts_ = 1;
    } else {
      ++at_;
    }
  }

  void end_line() {
    place_ = Place::kStart;
    key_parts_ = 0;
  }

  void value(char c) {
    if (c == '[' || c == '{') {
      open_.push_back({.place = place_, .key_parts = key_parts_});
      outer_parts_ += key_parts_;
      in_table_.push_back(c == '{');
      key_parts_ = c == '{' ? 1 : 0;
      place_ = c == '{' ? Place::kKey : Place::kValue;
    } else if (c == ']' || c == '}') {
      close();
    } else if (c == ',' && !open_.empty() && in_table_.back()) {
      key_parts_ = 1;
      place_ = Place::kKey;
    }
  }

  void close() {
    if (open_.empty()) return;
    place_ = open_.back().place;
    key_parts_ = open_.back().key_parts;
    outer_parts_ -= key_parts_;
    open_.pop_back();
    in_table_.pop_back();
  }

  void skip_comment() { at_ = std::min(toml_.find('\n', at_), toml_.size()); }

  void skip_string(char quote) {
    const std::string_view rest = toml_.substr(at_);
    const bool many_lines = rest.size() >= 3 && rest[1] == quote && rest[2] == quote;
    at_ += many_lines ? 3 : 1;
    while (at_ < toml_.size()) {
      const char c = toml_[at_];
      if (c == '\n' && !many_lines) return;  // a mistake, where reading ends
      if (c == '\\' && quote == '"') {
        at_ = std::min(at_ + 2, toml_.size());
      } else if (c != quote) {
        ++at_;
      } else if (!many_lines) {
        ++at_;
        return;
      } else if (end_of_many_lines(quote)) {
        return;
      }
    }
  }

  /// Passes quotation marks in a string of many lines. Three end it, and up to two more before
  /// them belong to it.
  bool end_of_many_lines(char quote) {
    const std::size_t run = std::min(toml_.find_first_not_of(quote, at_), toml_.size()) - at_;
    at_ += std::min<std::size_t>(run, 5);
    return run >= 3;
  }

  TomlPosition position(std::size_t offset) const {
    const std::string_view before = toml_.substr(0, offset);
    const std::size_t line_begin = before.rfind('\n') + 1;  // npos + 1 is 0
    const auto is_first_byte = [](char c) {
      return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    };
    const std::string_view line = before.substr(line_begin);
    return {.line = 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')),
            .column = 1 + static_cast<std::size_t>(
                              std::count_if(line.begin(), line.end(), is_first_byte))};
  }

  std::string_view toml_;
  std::size_t at_;
  Place place_ = Place::kStart;
  bool header_awaits_key_ = false;
  std::size_t header_parts_ = 0;  ///< of the table that lines belong to
  std::size_t key_parts_ = 0;     ///< of the key that is read, or whose value is
  std::size_t outer_parts_ = 0;   ///< of the keys around
  std::vector<Outside> open_;
  std::vector<bool> in_table_;
};

}  // namespace

std::optional<TomlTrouble> find_toml_trouble(std::string_view toml) {
  return TroubleFinder(toml).find();
}

}  // namespace bvconn::detail
