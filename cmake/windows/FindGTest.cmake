# From its sources, which Debian has beside the library for the machine that builds.
if(NOT TARGET GTest::gtest)
  set(sources /usr/src/googletest)
  add_library(bvconn_gtest STATIC "${sources}/googletest/src/gtest-all.cc"
    "${sources}/googlemock/src/gmock-all.cc")
  target_compile_features(bvconn_gtest PUBLIC cxx_std_17)
  target_compile_options(bvconn_gtest PRIVATE -w PUBLIC -Wa,-mbig-obj)
  target_include_directories(bvconn_gtest SYSTEM PUBLIC "${sources}/googletest/include"
    "${sources}/googlemock/include" PRIVATE "${sources}/googletest" "${sources}/googlemock")
  add_library(bvconn_gtest_main STATIC "${sources}/googlemock/src/gmock_main.cc")
  target_link_libraries(bvconn_gtest_main PUBLIC bvconn_gtest)
  add_library(GTest::gtest ALIAS bvconn_gtest)
  add_library(GTest::gmock ALIAS bvconn_gtest)
  add_library(GTest::gtest_main ALIAS bvconn_gtest_main)
endif()
set(GTest_FOUND TRUE)
