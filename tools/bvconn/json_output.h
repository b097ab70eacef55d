#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace bvconn::tool {

/// JSON on its way out, byte for byte as the JSON library writes it, but without a value of that
/// library's in between. What is written stands in a window of memory until it is full.
class JsonOutput {
 public:
  JsonOutput(const JsonOutput&) = delete;
  JsonOutput& operator=(const JsonOutput&) = delete;

  /// JSON as it stands.
  JsonOutput& raw(std::string_view json) {
    if (json.size() > room()) {
      raw_over_the_end(json);
    } else if (!json.empty()) {
      std::memcpy(at_, json.data(), json.size());
      at_ += json.size();
    }
    return *this;
  }
  JsonOutput& raw(char json) {
    if (room() == 0) make_room();
    *at_++ = json;
    return *this;
  }
  /// Text in quotes: what JSON lets stand for itself does, and bytes that are no UTF-8 are
  /// replaced.
  JsonOutput& string(std::string_view text);
  JsonOutput& integer(std::int64_t value);
  /// A number that JSON can write: neither infinite nor none.
  JsonOutput& number(double value);

 protected:
  JsonOutput() = default;
  ~JsonOutput() = default;

  /// Gives the window room for at least one byte more, by `set_window` as a rule.
  virtual void make_room() = 0;
  void set_window(char* at, char* end) {
    at_ = at;
    end_ = end;
  }
  /// Behind the last byte that was written.
  char* at() const { return at_; }

 private:
  std::size_t room() const { return static_cast<std::size_t>(end_ - at_); }
  void raw_over_the_end(std::string_view json);

  char* at_ = nullptr;
  char* end_ = nullptr;
};

/// JSON as a text of its own.
class JsonString final : public JsonOutput {
 public:
  JsonString() = default;
  std::string take();

 private:
  void make_room() override;

  std::string text_;
};

}  // namespace bvconn::tool
