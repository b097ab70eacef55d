#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace bvconn::tool {

/// The end of a file, in whole lines.
struct FileTail {
  std::string text;
  std::string trouble;  ///< why there is none; "" where the file could be read
};

/// At most the last `size_max` bytes of a regular file; nothing else is waited for.
FileTail file_tail(const std::string& path, std::size_t size_max);

/// Writes the text as the whole contents of a file that is its owner's alone; "-" is standard
/// output. @return why that failed; "" where it did not.
std::string write_private_file(const std::string& path, std::string_view text);

}  // namespace bvconn::tool
