#include "bvconn/platform/settings/file_stamp.h"

#include <algorithm>
#include <chrono>

namespace bvconn::detail {
namespace {

constexpr std::int64_t kSecond_ns = 1'000'000'000;
constexpr std::int64_t kFineStep_ns = kSecond_ns / 10;
constexpr std::int64_t kCoarseStep_ns = 3 * kSecond_ns;

std::int64_t in_ns(const struct timespec& time) {
  return std::int64_t{time.tv_sec} * kSecond_ns + time.tv_nsec;
}

}  // namespace

std::optional<FileStamp> stamp_of(const struct stat& status) {
  if (!S_ISREG(status.st_mode)) return std::nullopt;
  return FileStamp{.device = status.st_dev,
                   .inode = status.st_ino,
                   .size = status.st_size,
                   .content_ns = in_ns(status.st_mtim),
                   .status_ns = in_ns(status.st_ctim)};
}

std::optional<FileStamp> stamp_of(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return stamp_of(status);
}

bool can_be_trusted(const FileStamp& stamp, std::int64_t now_ns) {
  const std::int64_t step_ns = stamp.status_ns % kSecond_ns == 0 ? kCoarseStep_ns : kFineStep_ns;
  return std::max(stamp.content_ns, stamp.status_ns) < now_ns - step_ns;
}

std::int64_t now_ns() {
  using namespace std::chrono;
  return duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count();
}

}  // namespace bvconn::detail
