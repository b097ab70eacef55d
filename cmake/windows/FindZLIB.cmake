# The static one of Debian's mingw; its import library would need a DLL beside the program.
if(NOT TARGET ZLIB::ZLIB)
  set(folder "/usr/${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32")
  add_library(ZLIB::ZLIB STATIC IMPORTED GLOBAL)
  set_target_properties(ZLIB::ZLIB PROPERTIES IMPORTED_LOCATION "${folder}/lib/libz.a")
endif()
set(ZLIB_FOUND TRUE)
