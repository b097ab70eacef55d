#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace bvconn::sandbox {

/// A file that is there under its own name only when it is complete. Its owner alone may read it.
/// Whatever fails is thrown as std::system_error that names the file.
class NewFile {
 public:
  explicit NewFile(std::filesystem::path path);
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  void write(std::string_view text);
  /// What is late in failing fails here, before the file has its name.
  void finish(const std::filesystem::path& name);

 private:
  std::filesystem::path path_;
  int descriptor_;
  bool is_done_ = false;
};

/// Who may be able to read a file besides its owner.
enum class Readers { kAny, kOwnerAlone };

/// The text of a regular file of up to so many bytes. Throws std::runtime_error, in one clear line.
std::string text_of_file(const std::string& path, std::size_t bytes_max,
                         Readers readers = Readers::kAny);

/// A word that nobody else may know: what the file holds but for the blanks around it. Throws
/// std::runtime_error, in one clear line, also where others may read the file.
std::string word_of_file(const std::string& path);

}  // namespace bvconn::sandbox
