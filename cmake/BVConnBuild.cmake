# The few functions that all targets of the project are made with.
include(GNUInstallDirs)

set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

find_program(BVCONN_CCACHE ccache)
if(BVCONN_CCACHE AND PROJECT_IS_TOP_LEVEL AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # Paths below the project count as relative, so that clones in other folders share the cache.
  # What a source includes is known from its last compilation, so that it need not be preprocessed first.
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env
      "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" CCACHE_NOHASHDIR=1
      CCACHE_DEPEND=1 CCACHE_SLOPPINESS=pch_defines,time_macros "${BVCONN_CCACHE}")
endif()

option(BVCONN_TIDY "Check the sources with clang-tidy while compiling" OFF)
if(BVCONN_TIDY)
  find_program(BVCONN_CLANG_TIDY NAMES clang-tidy-14 clang-tidy REQUIRED)
  set(CMAKE_CXX_CLANG_TIDY "${BVCONN_CLANG_TIDY}")
endif()

# Headers are included as <bvconn/core/…>, in the build as in the installed package.
set(BVCONN_INCLUDE_ROOT "${PROJECT_SOURCE_DIR}")

# What Windows has otherwise lies in a folder "windows" below the sources, under the same name.
#
# bvconn_take_windows(VARIABLE FOLDER): on Windows each source of the list for which FOLDER has one of
# the same name stands back for that one.
function(bvconn_take_windows variable folder)
  if(WIN32)
    file(GLOB present CONFIGURE_DEPENDS "${folder}/*.cpp")
    set(taken "")
    foreach(source IN LISTS ${variable})
      cmake_path(GET source FILENAME name)
      if("${folder}/${name}" IN_LIST present)
        set(source "${folder}/${name}")
      endif()
      list(APPEND taken "${source}")
    endforeach()
    set(${variable} "${taken}" PARENT_SCOPE)
  endif()
endfunction()

# bvconn_tells_what_is_linked(TARGET): the linker lists what it took in a file TARGET.map of the build
# folder, from which a package names it.
function(bvconn_tells_what_is_linked target)
  target_link_options(${target} PRIVATE "-Wl,-Map,${CMAKE_BINARY_DIR}/${target}.map")
endfunction()

# bvconn_tells_its_version(TARGET FILE): a program or a DLL of Windows has a version among its resources,
# with the name of its file. The calling folder has enabled the language RC.
function(bvconn_tells_its_version target file)
  cmake_path(GET file STEM stem)
  # As the system numbers them.
  set(type 1)
  if(file MATCHES "\\.dll$")
    set(type 2)
  endif()
  configure_file("${PROJECT_SOURCE_DIR}/cmake/windows/version.rc.in" ${target}_version.rc @ONLY)
  target_sources(${target} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc")
endfunction()

# What every target of ours is compiled with: the language level, the warnings, the sanitizers.
add_library(bvconn_settings INTERFACE)
target_compile_features(bvconn_settings INTERFACE cxx_std_20)
target_compile_options(bvconn_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  $<$<BOOL:${BVCONN_WARNINGS_AS_ERRORS}>:-Werror>
  # GCC 12 warns of overlapping copies inside its own std::string when it optimises (its bug 105651).
  $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>,$<CONFIG:Release,RelWithDebInfo>>:-Wno-restrict>
  $<$<CXX_COMPILER_ID:Clang>:-Werror=reorder-init-list>)
target_include_directories(bvconn_settings INTERFACE "${BVCONN_INCLUDE_ROOT}")
if(WIN32)
  # Said once, since libcurl's header brings the system's too.
  target_compile_definitions(bvconn_settings INTERFACE UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN
                             _WIN32_WINNT=0x0A00)
  # Tables and templates make more sections than the older form of object files has numbers for.
  target_compile_options(bvconn_settings INTERFACE -Wa,-mbig-obj)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    # The older unit for floating point rounds, and traps, as the host has set it; the newer one, which
    # every processor of these systems has, computes as in 64 bits. It wants a stack that hosts of 32
    # bits do not align for it.
    target_compile_options(bvconn_settings INTERFACE -msse2 -mfpmath=sse -mstackrealign)
  endif()
  # A program or a DLL needs nothing but what the system has.
  target_link_options(bvconn_settings INTERFACE -static)
  if(NOT BUILD_SHARED_LIBS)
    target_compile_definitions(bvconn_settings INTERFACE BVCONN_STATIC)
  endif()
endif()
if(BVCONN_SANITIZE)
  target_compile_options(bvconn_settings INTERFACE
    -fsanitize=${BVCONN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(bvconn_settings INTERFACE -fsanitize=${BVCONN_SANITIZE})
endif()

# bvconn_shows_branches(TARGET): what runs in a fuzzer tells it which branches an input took. Programs
# that are no fuzzers link the same objects and ignore what they tell.
function(bvconn_shows_branches target)
  if(BVCONN_BUILD_FUZZERS)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

# bvconn_room(NAME [GLOB pattern] [COMPACT] [LINK targets…]): one room of bvconn/ as an object library of
# every .cpp below the calling folder, or of those that match the pattern. The rooms together make
# libBVConn.so; a test links just the rooms that it tests and those below them. A COMPACT one, which a
# call passes but once, is made small for Windows, where every desk gets a copy of the library.
function(bvconn_room name)
  cmake_parse_arguments(ARG "COMPACT" "GLOB" "LINK" ${ARGN})
  if(ARG_GLOB)
    file(GLOB sources CONFIGURE_DEPENDS "${ARG_GLOB}")
  else()
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  endif()
  list(FILTER sources EXCLUDE REGEX "^${CMAKE_CURRENT_SOURCE_DIR}/windows/")
  bvconn_take_windows(sources "${PROJECT_SOURCE_DIR}/bvconn/platform/windows")
  bvconn_take_windows(sources "${CMAKE_CURRENT_SOURCE_DIR}/windows")
  add_library(bvconn_${name} OBJECT ${sources})
  set_target_properties(bvconn_${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_compile_definitions(bvconn_${name} PRIVATE BVCONN_BUILDING)
  target_link_libraries(bvconn_${name} PUBLIC bvconn_settings ${ARG_LINK})
  if(WIN32 AND ARG_COMPACT)
    target_compile_options(bvconn_${name} PRIVATE -Os)
    bvconn_takes_headers(bvconn_${name} compact)
  else()
    bvconn_takes_headers(bvconn_${name} rooms)
  endif()
  bvconn_shows_branches(bvconn_${name})
  set_property(GLOBAL APPEND PROPERTY BVCONN_ROOMS bvconn_${name})
endfunction()

# bvconn_rooms_from(OUT room targets…): these rooms and all that they link, since the objects of an
# object library reach only those who name it.
function(bvconn_rooms_from out)
  get_property(all GLOBAL PROPERTY BVCONN_ROOMS)
  set(open ${ARGN})
  set(found "")
  while(open)
    list(POP_FRONT open room)
    if(room IN_LIST all AND NOT room IN_LIST found)
      list(APPEND found "${room}")
      get_target_property(links "${room}" LINK_LIBRARIES)
      list(APPEND open ${links})
    endif()
  endwhile()
  set(${out} "${found}" PARENT_SCOPE)
endfunction()

# bvconn_knows_sanitizers(TARGET): BVCONN_SANITIZED is defined where a sanitizer makes it slow and
# keeps memory of its own.
function(bvconn_knows_sanitizers target)
  if(BVCONN_SANITIZE)
    target_compile_definitions(${target} PRIVATE BVCONN_SANITIZED)
  endif()
endfunction()

# Starting a sanitized program costs more than most of its tests do.
if(BVCONN_SANITIZE)
  set(join_tests ON)
else()
  set(join_tests OFF)
endif()
option(BVCONN_JOIN_TESTS "Make one ctest entry of a test program, not one of each of its tests"
       ${join_tests})

# bvconn_joined_test(NAME COMMAND command… [PROPERTIES properties…]): a ctest entry of many GoogleTest
# tests in one process. Its output names each test before it runs, one that ends the process too.
function(bvconn_joined_test name)
  cmake_parse_arguments(ARG "" "" "COMMAND;PROPERTIES" ${ARGN})
  add_test(NAME ${name} COMMAND ${ARG_COMMAND})
  set_tests_properties(${name} PROPERTIES ${ARG_PROPERTIES} TIMEOUT 900)
endfunction()

# bvconn_test(NAME SOURCES files… [ROOMS rooms…] [LINK targets…] [LABELS labels…] [TIMEOUT seconds]
# [PREFIX before the tests' names] [SERIAL] [LONG] [FILLED] [APART reason]): one GoogleTest program; each of
# its tests is a ctest entry. Where tests are joined the program is one entry that bears its name (a LONG one begins early, so that it
# does not end alone), unless APART gives the reason why its tests need processes of their own.
# Tests labelled "threads" run under the thread sanitizer too; the target threads_tests builds them.
# ROOMS names the highest rooms in use, without their prefix; those below come with them, and "all"
# stands for all. On Windows those that are FILLED run a second time, as NAME.filled, in a heap that
# overwrites what is freed.
function(bvconn_test name)
  cmake_parse_arguments(ARG "SERIAL;LONG;FILLED" "TIMEOUT;APART;PREFIX" "SOURCES;ROOMS;LINK;LABELS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  if(ARG_ROOMS STREQUAL "all")
    get_property(rooms GLOBAL PROPERTY BVCONN_ROOMS)
  else()
    list(TRANSFORM ARG_ROOMS PREPEND bvconn_)
    bvconn_rooms_from(rooms ${ARG_ROOMS})
  endif()
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${name} PRIVATE bvconn_settings ${rooms} ${ARG_LINK} GTest::gtest
                        GTest::gmock GTest::gtest_main)
  bvconn_takes_headers(${name} tests)
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  set(properties TIMEOUT ${ARG_TIMEOUT})
  if(ARG_SERIAL)
    list(APPEND properties RUN_SERIAL TRUE)
  endif()
  if(ARG_LONG)
    list(APPEND properties COST 100)
  endif()
  if(WIN32)
    set(ARG_LABELS windows)
  endif()
  if(ARG_LABELS)
    list(APPEND properties LABELS "${ARG_LABELS}")
    foreach(label IN LISTS ARG_LABELS)
      if(NOT TARGET ${label}_tests)
        add_custom_target(${label}_tests)
      endif()
      add_dependencies(${label}_tests ${name})
    endforeach()
  endif()
  if(BVCONN_JOIN_TESTS AND NOT ARG_APART)
    bvconn_joined_test(${name} COMMAND ${name} PROPERTIES ${properties})
    if(WIN32 AND ARG_FILLED)
      bvconn_joined_test(${name}.filled COMMAND ${name} PROPERTIES ${properties}
        ENVIRONMENT WINEDEBUG=warn+heap FAIL_REGULAR_EXPRESSION "(err|warn):heap")
    endif()
  else()
    gtest_discover_tests(${name} TEST_PREFIX "${ARG_PREFIX}" DISCOVERY_TIMEOUT 60
                         PROPERTIES ${properties})
  endif()
endfunction()

# bvconn_file_tests(PREFIX COMMAND runner… FILES files… [PROPERTIES properties…]): each file, given to
# the runner, is a ctest entry, PREFIX.STEM; where tests are joined all of them are one, PREFIX.files.
function(bvconn_file_tests prefix)
  cmake_parse_arguments(ARG "" "" "COMMAND;FILES;PROPERTIES" ${ARGN})
  if(BVCONN_JOIN_TESTS)
    if(WIN32)
      # A command line has 32,767 characters there, and the project may lie in a folder of any depth.
      list(TRANSFORM ARG_FILES REPLACE "^${CMAKE_CURRENT_SOURCE_DIR}/" "")
      list(APPEND ARG_PROPERTIES WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" LABELS windows)
    endif()
    bvconn_joined_test(${prefix}.files COMMAND ${ARG_COMMAND} ${ARG_FILES}
                       PROPERTIES ${ARG_PROPERTIES})
    return()
  endif()
  foreach(file IN LISTS ARG_FILES)
    cmake_path(GET file STEM LAST_ONLY name)
    add_test(NAME ${prefix}.${name} COMMAND ${ARG_COMMAND} "${file}")
    set_tests_properties(${prefix}.${name} PROPERTIES ${ARG_PROPERTIES})
  endforeach()
endfunction()
