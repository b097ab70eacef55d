#pragma once

#include <array>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include "json_output.h"

namespace bvconn::tool {

/// Takes lines of output, in parts where they are long.
class LineOutput {
 public:
  virtual ~LineOutput() = default;
  /// The beginning of a line, or more of it.
  virtual void part(std::string_view text) = 0;
  /// The rest of a line or the whole of it, without its line end.
  virtual void end(std::string_view text) = 0;
};

/// Lines on a stream, each flushed at once.
class StreamLines final : public LineOutput {
 public:
  explicit StreamLines(std::ostream& out) : out_(out) {}
  void part(std::string_view text) override { out_ << text; }
  void end(std::string_view text) override { out_ << text << std::endl; }

 private:
  std::ostream& out_;
};

/// Gives each line in one piece, however long it is.
class WholeLines final : public LineOutput {
 public:
  using Taker = std::function<void(std::string_view line)>;
  explicit WholeLines(Taker taker) : taker_(std::move(taker)) {}
  void part(std::string_view text) override { begun_.append(text); }
  void end(std::string_view text) override;

 private:
  Taker taker_;
  std::string begun_;
};

/// One line of JSON after another, each through the same memory, whatever its length.
///
/// What fails while a line is written leaves it as it is: `clear` takes it back where nothing of it
/// `has_left`.
class JsonLine final : public JsonOutput {
 public:
  explicit JsonLine(LineOutput& out) : out_(out) { clear(); }

  /// Begins the line anew.
  void clear();
  /// Whether some of the line is out, so that no other can take its place.
  bool has_left() const { return has_left_; }
  void end_line();

 private:
  void make_room() override;
  std::string_view written() const {
    return {buffer_.data(), static_cast<std::size_t>(at() - buffer_.data())};
  }

  LineOutput& out_;
  bool has_left_ = false;
  std::array<char, 65536> buffer_;
};

}  // namespace bvconn::tool
