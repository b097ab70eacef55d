# bvconn_header_checks(NAME): compiles every header of bvconn/ alone and twice, and all those that
# show no third-party code after the macros of some systems. Nothing of it runs.
function(bvconn_header_checks name)
  set(folder "${CMAKE_CURRENT_BINARY_DIR}/${name}")
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}/bvconn"
       "${PROJECT_SOURCE_DIR}/bvconn/*.h")
  # Those need the system that they are for.
  list(FILTER headers EXCLUDE REGEX "^platform/windows/")
  set(hostile "#include \"tree/hostile_macros.h\"\n")
  set(sources "${folder}/hostile_macros.cpp")
  foreach(header IN LISTS headers)
    string(REPLACE "/" "." source "${folder}/${header}.cpp")
    file(CONFIGURE OUTPUT "${source}" @ONLY CONTENT
         "#include \"bvconn/@header@\"\n#include \"bvconn/@header@\"  // guarded\n")
    list(APPEND sources "${source}")
    file(STRINGS "${PROJECT_SOURCE_DIR}/bvconn/${header}" third_party
         REGEX "^#include (<(curl|zlib|toml|nlohmann)|\"bvconn/platform/settings/toml_reader)")
    if(NOT third_party)
      string(APPEND hostile "#include \"bvconn/${header}\"\n"
             "#if !defined(min) || !defined(max)\n"
             "#error ${header}: name its standard headers in tests/tree/hostile_macros.h\n"
             "#endif\n")
    endif()
  endforeach()
  file(CONFIGURE OUTPUT "${folder}/hostile_macros.cpp" @ONLY CONTENT "${hostile}")
  add_library(${name} OBJECT ${sources})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${name} PRIVATE bvconn_settings)
  target_compile_options(${name} PRIVATE -O0 -g0)
endfunction()
