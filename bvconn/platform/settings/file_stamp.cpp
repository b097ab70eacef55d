#include "bvconn/platform/settings/file_stamp.h"

#include <algorithm>
#include <chrono>

namespace bvconn::detail {
namespace {

constexpr std::int64_t kSecond_ns = 1'000'000'000;
constexpr std::int64_t kFineStep_ns = kSecond_ns / 10;
constexpr std::int64_t kCoarseStep_ns = 3 * kSecond_ns;

}  // namespace

std::optional<FileStamp> stamp_of(const FileState& state) {
  if (!state.is_regular) return std::nullopt;
  return FileStamp{.device = state.device,
                   .inode = state.inode,
                   .size = state.size,
                   .content_ns = state.content_ns,
                   .status_ns = state.status_ns};
}

std::optional<FileStamp> stamp_of(const std::string& path) {
  const std::optional<FileState> state = state_of(path);
  return state ? stamp_of(*state) : std::nullopt;
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
