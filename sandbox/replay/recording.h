#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "sandbox/http/message.h"
#include "sandbox/replay/asked_request.h"
#include "sandbox/wire/wire_file.h"

namespace bvconn::sandbox {

/// An exchange of a recording: what was asked, and what was answered.
struct Recorded {
  std::string place;  ///< file and line of its call, "orders/000001.wire:3"
  AskedRequest request;
  Reply reply;
};

/// What a recording may hold; all of it is kept in memory.
inline constexpr std::size_t kMostRecorded = 50'000;
inline constexpr std::size_t kMostRecordedBytes = std::size_t{256} << 20;

/// The reply that a step describes.
Reply reply_of(const wire::WireStep& step);

/// The exchanges of all files `*.wire` in and below a folder, in the order of the paths. Steps that
/// send nothing, or whose reply never came, are none. Throws std::runtime_error, with one line, for
/// a folder or a file that cannot be read, that holds none or too much.
std::vector<Recorded> load_recording(const std::filesystem::path& folder,
                                     const RequestReader& reader);

}  // namespace bvconn::sandbox
