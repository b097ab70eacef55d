# Writes a source with the text of files in it: cmake -D OUT=… -D "FILES=a;b" -P embed.cmake
set(rows "")
foreach(file IN LISTS FILES)
  cmake_path(GET file FILENAME name)
  file(READ "${file}" text)
  # The longest text that every compiler takes as one.
  string(LENGTH "${text}" length)
  if(length GREATER 60000 OR text MATCHES "\\)page\"")
    message(FATAL_ERROR "${name} is too long, or holds the end of a raw text")
  endif()
  string(APPEND rows "    {\"${name}\", R\"page(${text})page\"},\n")
endforeach()
file(WRITE "${OUT}" "#include \"sandbox/page/page_files.h\"

namespace bvconn::sandbox {
namespace {

constexpr PageFile kFiles[] = {
${rows}};

}  // namespace

std::span<const PageFile> page_files() {
  return kFiles;
}

}  // namespace bvconn::sandbox
")
