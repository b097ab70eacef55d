#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// What the program asks of the system itself.
namespace bvconn::tool {

/// Makes a write to a reader that went away an error, not the end of this process.
void survive_broken_pipes();

/// Gives each of the three standard files that the starter left closed to a file that can neither
/// be read nor written in its direction: otherwise the next file or connection would get its
/// number, and with it what is meant for a reader. Before anything is opened.
void hold_standard_files();

/// The words of the command line behind that of the program, as UTF-8.
std::vector<std::string> command_line(int argc, const char* const* argv);

/// A variable of this process's environment as UTF-8; nothing where it is not set.
std::optional<std::string> variable_of(const char* name);
/// Sets one.
void set_variable(const char* name, const std::string& value);
/// All of them, each as "NAME=value".
std::vector<std::string> variables();

/// Where programs keep what their user sets; "" without a home.
std::string user_settings_folder();

/// "Linux 6.1.0 x86_64"; "" where it is not known.
std::string system_name();
/// What the system's makers call it; "" where they say nothing.
std::string distribution_name();
/// "2007-01-05T10:11:12+0100"
std::string local_time_text();

/// Writes to standard output: how many bytes it took; -1 on a failure, of which `errno` tells.
std::ptrdiff_t write_standard_output(const char* text, std::size_t count);

/// Makes a new or emptied file, a new one for its owner alone; 0, or the error number.
int make_private_file(const std::string& path);

/// Why no line can be appended to a regular file of that name, which is made where it is missing;
/// "" where one can.
std::string trouble_with_appending(const std::string& path);

/// Whether standard input is a folder, which fails in a way that a stream takes for its end.
bool is_standard_input_a_folder();

}  // namespace bvconn::tool
