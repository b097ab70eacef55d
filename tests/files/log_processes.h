#pragma once

#include <cstdint>
#include <string>

/// Processes that write to one log at the same time.
namespace bvconn::files_test {

inline constexpr int kProcesses = 4;
inline constexpr int kLinesOfEach = 3000;

/// The line of this number, which one in fifty times is a page and more.
std::string line_of(int process, int number);
/// Writes all lines of a process; false where one was not written.
bool write_lines(int process, const std::string& path, std::uint64_t max_bytes);
/// Has each process write its lines, and waits for all of them.
void write_from_processes(const std::string& path, std::uint64_t max_bytes);

}  // namespace bvconn::files_test
