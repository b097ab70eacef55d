# Headers that most sources include, read by the compiler once and not for each of them. Only where a
# preset asks for it: what a source forgot to include goes unnoticed with them.
option(BVCONN_PRECOMPILE "Compile the headers of other libraries once for all sources" OFF)

set(bvconn_headers_rooms <algorithm> <array> <chrono> <cstdint> <functional> <memory> <optional> <span>
    <string> <string_view> <utility> <variant> <vector>)
set(bvconn_headers_compact ${bvconn_headers_rooms})
set(bvconn_headers_tests ${bvconn_headers_rooms} <filesystem> <fstream> <map> <set> <thread> <gmock/gmock.h>
    <gtest/gtest.h>)

# bvconn_headers(KIND [LINK targets…] [OPTIONS options…]): makes those of "rooms", "compact" rooms or
# "tests". Whoever takes them is optimised as they are, whatever its own options say.
function(bvconn_headers kind)
  cmake_parse_arguments(ARG "" "" "LINK;OPTIONS" ${ARGN})
  if(NOT BVCONN_PRECOMPILE)
    return()
  endif()
  file(CONFIGURE OUTPUT headers.cpp CONTENT "")
  add_library(bvconn_headers_${kind} OBJECT "${CMAKE_CURRENT_BINARY_DIR}/headers.cpp")
  target_link_libraries(bvconn_headers_${kind} PRIVATE bvconn_settings ${ARG_LINK})
  target_compile_options(bvconn_headers_${kind} PRIVATE ${ARG_OPTIONS})
  target_precompile_headers(bvconn_headers_${kind} PRIVATE ${bvconn_headers_${kind}})
endfunction()

# bvconn_takes_headers(TARGET KIND): its sources find them compiled.
function(bvconn_takes_headers target kind)
  if(TARGET bvconn_headers_${kind})
    target_precompile_headers(${target} REUSE_FROM bvconn_headers_${kind})
  endif()
endfunction()
