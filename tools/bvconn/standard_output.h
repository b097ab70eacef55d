#pragma once

#include <array>
#include <cstddef>
#include <streambuf>

namespace bvconn::tool {

/// Standard output with a memory: the first failure of a write, which a stream of the standard
/// library forgets. It takes the place of the buffer of `std::cout` while it lives.
class StandardOutput final : public std::streambuf {
 public:
  StandardOutput();
  ~StandardOutput() override;
  StandardOutput(const StandardOutput&) = delete;
  StandardOutput& operator=(const StandardOutput&) = delete;

  /// Writes what is left. The error number of the first write that failed, or 0.
  int finish();

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize count) override;
  int sync() override;

 private:
  void write(const char* text, std::size_t count);

  std::array<char, 16384> buffer_;
  std::streambuf* before_;
  int failure_ = 0;
};

}  // namespace bvconn::tool
