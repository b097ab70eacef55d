#include "sandbox/toml_file.h"

#include <cstddef>
#include <fstream>
#include <utility>

namespace bvconn::sandbox {

toml::table read_toml_file(const std::string& file) {
  constexpr std::size_t kLargest = std::size_t{1} << 20;
  std::ifstream stream(file, std::ios::binary);
  std::string text(kLargest + 1, '\0');
  stream.read(text.data(), static_cast<std::streamsize>(text.size()));
  if (!stream.is_open() || stream.bad()) throw std::runtime_error(file + " cannot be read");
  text.resize(static_cast<std::size_t>(stream.gcount()));
  if (text.size() > kLargest) throw std::runtime_error(file + " is larger than 1 MiB");
  detail::TomlReading reading = detail::read_toml(text);
  if (!reading.trouble) return std::move(reading.table);
  throw std::runtime_error(
      file + " is not TOML at line " + std::to_string(reading.trouble->at.line) + ", column " +
      std::to_string(reading.trouble->at.column) + ": " + reading.trouble->reason);
}

}  // namespace bvconn::sandbox
