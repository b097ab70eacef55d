# Builds the examples with the installed library, from a copy of their folder or from where they lie:
#   cmake -S EXAMPLES -B BUILD -DCMAKE_PREFIX_PATH=PREFIX
cmake_minimum_required(VERSION 3.25)
project(BVConnExamples LANGUAGES C CXX)
find_package(BVConn 0.1 REQUIRED COMPONENTS Testing)
find_package(Threads REQUIRED)

file(GLOB sources CONFIGURE_DEPENDS *.cpp *.c)
foreach(source IN LISTS sources)
  cmake_path(GET source STEM name)
  add_executable(${name} ${source})
  target_link_libraries(${name} PRIVATE BVConn::Testing Threads::Threads ${CMAKE_DL_LIBS})
endforeach()
