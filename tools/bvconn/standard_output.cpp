#include "standard_output.h"

#include <cerrno>
#include <iostream>

#include "system.h"

namespace bvconn::tool {

StandardOutput::StandardOutput() : before_(std::cout.rdbuf(this)) {
  setp(buffer_.data(), buffer_.data() + buffer_.size());
}

StandardOutput::~StandardOutput() {
  sync();
  std::cout.rdbuf(before_);
}

int StandardOutput::finish() {
  sync();
  return failure_;
}

StandardOutput::int_type StandardOutput::overflow(int_type c) {
  if (sync() != 0) return traits_type::eof();
  if (!traits_type::eq_int_type(c, traits_type::eof())) sputc(traits_type::to_char_type(c));
  return traits_type::not_eof(c);
}

std::streamsize StandardOutput::xsputn(const char* text, std::streamsize count) {
  if (count < epptr() - pptr()) return std::streambuf::xsputn(text, count);
  // A text that is as large as the buffer gains nothing in it.
  if (sync() != 0) return 0;
  write(text, static_cast<std::size_t>(count));
  return failure_ == 0 ? count : 0;
}

int StandardOutput::sync() {
  write(pbase(), static_cast<std::size_t>(pptr() - pbase()));
  setp(buffer_.data(), buffer_.data() + buffer_.size());
  return failure_ == 0 ? 0 : -1;
}

void StandardOutput::write(const char* text, std::size_t count) {
  const char* const end = text + count;
  while (failure_ == 0 && text != end) {
    const std::ptrdiff_t written =
        write_standard_output(text, static_cast<std::size_t>(end - text));
    if (written >= 0) {
      text += written;
    } else if (errno != EINTR) {
      failure_ = errno;
    }
  }
}

}  // namespace bvconn::tool
