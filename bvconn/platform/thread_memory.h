#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace bvconn::detail {

/// A piece of memory with one owner.
///
/// A small one comes from `operator new`, one from 120 KiB on from the system, where it goes back
/// to at once, whatever the process's allocator would rather keep: so a process that reads a large
/// reply now and then is as small between them as before. A large one lies in huge pages where the
/// system has them, since taking up such memory page by page costs more than what is then done with
/// it. Memory of the system costs nothing before it is written to.
class MemoryBlock {
 public:
  /// From this size on memory is the system's. The C library's allocator would ask the system too,
  /// but from the first such block that is freed it keeps as much back as that block had.
  static constexpr std::size_t kOfSystem = std::size_t{120} << 10;
  /// From this size on no thread keeps a block for the next time.
  static constexpr std::size_t kLarge = std::size_t{256} << 10;

  MemoryBlock() = default;
  /// At least so many bytes. Throws `std::bad_alloc`.
  explicit MemoryBlock(std::size_t bytes);
  MemoryBlock(MemoryBlock&& other) noexcept
      : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)) {}
  MemoryBlock& operator=(MemoryBlock&& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    return *this;
  }
  ~MemoryBlock() {
    if (data_ != nullptr) free();
  }

  /// Makes it larger. Its first `used` bytes stay the same, and may lie elsewhere. Throws
  /// `std::bad_alloc`; then nothing has changed.
  void grow(std::size_t bytes, std::size_t used);

  std::byte* data() const noexcept { return data_; }
  std::size_t size() const noexcept { return size_; }

 private:
  void free() noexcept;

  std::byte* data_ = nullptr;
  std::size_t size_ = 0;
};

/// What a thread keeps a spare block for.
enum class Spare : std::uint8_t { kText, kNodes };

/// A block of at least so many bytes: the calling thread's spare one, or a new one. Throws
/// `std::bad_alloc`.
MemoryBlock spare_or_new(Spare use, std::size_t bytes);
/// Keeps a block of the calling thread for the next time. One for each use is kept, the larger of
/// two, and no large one; after the end of the thread none.
void keep_spare(Spare use, MemoryBlock block) noexcept;

}  // namespace bvconn::detail
