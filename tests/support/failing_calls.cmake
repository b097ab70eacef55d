# bvconn_wrap_calls(TARGET): its calls of the system's files and of libcurl go through
# failing_calls.cpp, which has to be among its sources.
function(bvconn_wrap_calls target)
  foreach(call open read write close rename fsync stat fstat statx mkdir flock unlink fchown
               fchmod realpath poll curl_global_init curl_easy_init curl_easy_setopt curl_easy_perform
               curl_easy_getinfo curl_slist_append curl_url curl_url_set)
    target_link_options(${target} PRIVATE "-Wl,--wrap=${call}")
  endforeach()
endfunction()
