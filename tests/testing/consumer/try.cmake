# Configures the consumer with the whole library among its sources, and compiles its one source with
# what the library's targets give it. It is linked with the libraries that are built already: to
# build them once more would take minutes and show nothing else.
#
#   cmake -DSOURCE=… -DBINARY=… -DBVCONN_SOURCE=… -DCOMPILER=… -DFLAGS=… -DLIBRARIES=… -P try.cmake
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "${command}\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

set(object "CMakeFiles/consumer.dir/consumer.cpp.o")
run("${CMAKE_COMMAND}" -S "${SOURCE}" -B "${BINARY}" -G Ninja "-DBVCONN_SOURCE=${BVCONN_SOURCE}"
    "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_FLAGS=${FLAGS}")
run("${CMAKE_COMMAND}" --build "${BINARY}" --target "${object}")
run("${COMPILER}" "${BINARY}/${object}" ${LIBRARIES} -o "${BINARY}/linked")
run("${BINARY}/linked")
if(NOT output STREQUAL "asked for U-1, got 4711\n")
  message(FATAL_ERROR "it said: ${output}")
endif()
