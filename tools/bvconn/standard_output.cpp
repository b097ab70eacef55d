#include "standard_output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <iostream>

namespace bvconn::tool {

void hold_standard_files() {
  for (const int file : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (::fcntl(file, F_GETFD) >= 0 || errno != EBADF) continue;
    // The lowest number that is free: this one.
    static_cast<void>(::open("/dev/null", file == STDIN_FILENO ? O_WRONLY : O_RDONLY));
  }
}

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

int StandardOutput::sync() {
  const char* at = pbase();
  while (failure_ == 0 && at != pptr()) {
    const ssize_t count = ::write(STDOUT_FILENO, at, static_cast<std::size_t>(pptr() - at));
    if (count >= 0) {
      at += count;
    } else if (errno != EINTR) {
      failure_ = errno;
    }
  }
  setp(buffer_.data(), buffer_.data() + buffer_.size());
  return failure_ == 0 ? 0 : -1;
}

}  // namespace bvconn::tool
