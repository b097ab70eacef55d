#include <filesystem>
#include <random>

#include "sandbox/shared_place.h"

namespace bvconn::test {
namespace {

/// A folder of its own that goes with the program.
struct Folder {
  std::filesystem::path path = std::filesystem::temp_directory_path() /
                               ("bvsandbox-shared-" + std::to_string(std::random_device{}()));
  int files = 0;
  Folder() { std::filesystem::create_directory(path); }
  ~Folder() { std::filesystem::remove_all(path); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
};

}  // namespace

std::string new_shared_place() {
  static Folder folder;
  return (folder.path / ("store" + std::to_string(++folder.files) + ".db")).string();
}

std::string shared_place_missing() {
  return {};
}

}  // namespace bvconn::test
