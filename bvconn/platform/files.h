#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// What the rooms that keep files share; not a part of the interface.
namespace bvconn::detail {

/// An open file, closed with this object.
class Descriptor {
 public:
  explicit Descriptor(int file = -1) noexcept : file_(file) {}
  Descriptor(Descriptor&& other) noexcept;
  Descriptor& operator=(Descriptor&& other) noexcept;
  ~Descriptor();

  explicit operator bool() const noexcept { return file_ >= 0; }
  int get() const noexcept { return file_; }
  /// Closes the file now; the error number of that, or 0.
  int close() noexcept;

 private:
  int file_;
};

/// A file that was opened, or why it was not.
struct OpenedFile {
  Descriptor file;
  int code = 0;  ///< for `system_message`
};

/// Opens a regular file or /dev/null; a new one is its owner's alone. Anything else of that name (a
/// pipe, a device, a socket, a folder) is refused, and nothing of it is ever waited for.
OpenedFile open_file(const std::string& path, int flags);

/// The value of an environment variable; "" when it is not set.
std::string environment(const char* name);

/// Where the user's programs keep what they write, and what the user sets.
enum class UserFolder : std::uint8_t { kState, kSettings };

/// A file of this user, by its name below such a folder. "" when the user has no home.
std::string user_file(UserFolder folder, std::string_view name);
/// A file of all users of the machine, for its administrator to write.
std::string machine_file(std::string_view name);

/// Makes the missing folders of a file's path, for their owner alone (0700). False when one is
/// missing afterwards.
bool make_folders_of(const std::string& path);

/// Reads up to so many bytes: how many there were, 0 at the end; -1 on a failure, of which `errno`
/// tells.
std::ptrdiff_t read_some(int file, char* to, std::size_t size) noexcept;

/// Writes all bytes, in one call as far as the system takes them so. The error number, or 0.
int write_all(int file, std::string_view bytes) noexcept;

/// The system's text for an error number, or our own for what `open_file` refuses.
std::string system_message(int code);

}  // namespace bvconn::detail
