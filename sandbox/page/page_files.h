#pragma once

#include <span>
#include <string_view>

namespace bvconn::sandbox {

/// A file of this folder as it is served.
struct PageFile {
  std::string_view name;
  std::string_view text;
};

/// All of them; made from the files when the program is built.
std::span<const PageFile> page_files();

}  // namespace bvconn::sandbox
