#include <unistd.h>

#include <cerrno>
#include <utility>

#include "bvconn/platform/files.h"

namespace bvconn::detail {

Descriptor::Descriptor(Descriptor&& other) noexcept : file_(std::exchange(other.file_, -1)) {}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  if (this != &other) {
    close();
    file_ = std::exchange(other.file_, -1);
  }
  return *this;
}

Descriptor::~Descriptor() {
  close();
}

int Descriptor::close() noexcept {
  const int file = std::exchange(file_, -1);
  return file >= 0 && ::close(file) != 0 ? errno : 0;
}

}  // namespace bvconn::detail
