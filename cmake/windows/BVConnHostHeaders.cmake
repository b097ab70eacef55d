# Libraries that are headers alone are taken from the machine that builds: through a folder of links,
# since the rest of its headers would be found beside them.

# bvconn_host_headers(TARGET FOLDER): TARGET offers what lies in /usr/include/FOLDER.
function(bvconn_host_headers target folder)
  if(TARGET ${target})
    return()
  endif()
  set(links "${CMAKE_BINARY_DIR}/host_headers")
  file(MAKE_DIRECTORY "${links}")
  if(EXISTS "/usr/include/${folder}")
    file(CREATE_LINK "/usr/include/${folder}" "${links}/${folder}" SYMBOLIC)
  else()
    message(FATAL_ERROR "There is no /usr/include/${folder}; see ./dev setup")
  endif()
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM INTERFACE "${links}")
endfunction()
