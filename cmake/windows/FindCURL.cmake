# The one that packaging/windows/libcurl builds.
if(NOT TARGET CURL::libcurl)
  set(folder "${BVCONN_WINDOWS_LIBRARIES}")
  if(NOT EXISTS "${folder}/lib/libcurl.a")
    message(FATAL_ERROR "There is no libcurl in ${folder}; see ./dev windows")
  endif()
  add_library(CURL::libcurl STATIC IMPORTED GLOBAL)
  set_target_properties(CURL::libcurl PROPERTIES IMPORTED_LOCATION "${folder}/lib/libcurl.a"
    INTERFACE_INCLUDE_DIRECTORIES "${folder}/include"
    INTERFACE_COMPILE_DEFINITIONS CURL_STATICLIB
    INTERFACE_LINK_LIBRARIES "ws2_32;crypt32;bcrypt;secur32;advapi32")
endif()
set(CURL_FOUND TRUE)
