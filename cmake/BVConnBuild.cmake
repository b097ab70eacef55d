# The few functions that all targets of the project are made with.
include(GNUInstallDirs)

set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

find_program(BVCONN_CCACHE ccache)
if(BVCONN_CCACHE AND PROJECT_IS_TOP_LEVEL AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${BVCONN_CCACHE}")
endif()

# Headers are included as <bvconn/core/…>, in the build as in the installed package: the include
# root of the build holds one link, bvconn, to the sources.
set(BVCONN_INCLUDE_ROOT "${PROJECT_BINARY_DIR}/include")
file(MAKE_DIRECTORY "${BVCONN_INCLUDE_ROOT}")
if(NOT EXISTS "${BVCONN_INCLUDE_ROOT}/bvconn")
  file(CREATE_LINK "${PROJECT_SOURCE_DIR}/src" "${BVCONN_INCLUDE_ROOT}/bvconn" SYMBOLIC)
endif()

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
if(BVCONN_SANITIZE)
  target_compile_options(bvconn_settings INTERFACE
    -fsanitize=${BVCONN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(bvconn_settings INTERFACE -fsanitize=${BVCONN_SANITIZE})
endif()

# bvconn_room(NAME [GLOB pattern] [LINK targets…]): one room of src/ as an object library of every
# .cpp below the calling folder, or of those that match the pattern. The rooms together make libBVConn.so; a test links just the rooms that it tests.
function(bvconn_room name)
  cmake_parse_arguments(ARG "" "GLOB" "LINK" ${ARGN})
  if(ARG_GLOB)
    file(GLOB sources CONFIGURE_DEPENDS "${ARG_GLOB}")
  else()
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  endif()
  add_library(bvconn_${name} OBJECT ${sources})
  set_target_properties(bvconn_${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  target_compile_definitions(bvconn_${name} PRIVATE BVCONN_BUILDING)
  target_link_libraries(bvconn_${name} PUBLIC bvconn_settings ${ARG_LINK})
  set_property(GLOBAL APPEND PROPERTY BVCONN_ROOMS bvconn_${name})
endfunction()

# bvconn_test(NAME SOURCES files… [ROOMS rooms…] [LINK targets…]): one GoogleTest program; each of
# its tests is a ctest entry. Tests labelled "threads" run under the thread
# sanitizer too; the target threads_tests builds them. ROOMS names rooms without their prefix; "all" stands for all of them.
function(bvconn_test name)
  cmake_parse_arguments(ARG "SERIAL" "TIMEOUT" "SOURCES;ROOMS;LINK;LABELS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  set(rooms "")
  foreach(room IN LISTS ARG_ROOMS)
    if(room STREQUAL "all")
      get_property(rooms GLOBAL PROPERTY BVCONN_ROOMS)
    else()
      list(APPEND rooms bvconn_${room})
    endif()
  endforeach()
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${name} PRIVATE bvconn_settings ${rooms} ${ARG_LINK} GTest::gtest
                        GTest::gmock GTest::gtest_main)
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  set(properties TIMEOUT ${ARG_TIMEOUT})
  if(ARG_SERIAL)
    list(APPEND properties RUN_SERIAL TRUE)
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
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES ${properties})
endfunction()
