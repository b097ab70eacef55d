# Builds the examples with the package that they lie in:
#   cmake -S examples -B BUILD -G Ninja -DCMAKE_PREFIX_PATH=FOLDER_OF_THE_PACKAGE
# Those in windows/ call the registered component. The others have the static library in them, for which
# the GCC that the package's README names is needed; with another compiler they are left out.
cmake_minimum_required(VERSION 3.25)
project(BVConnExamples LANGUAGES CXX)
find_package(BVConn 0.1 REQUIRED COMPONENTS Component)

file(GLOB sources CONFIGURE_DEPENDS windows/*.cpp)
foreach(source IN LISTS sources)
  cmake_path(GET source STEM name)
  add_executable(${name} ${source})
  target_link_libraries(${name} PRIVATE BVConn::Component ole32 oleaut32)
  if(MINGW)
    target_compile_options(${name} PRIVATE -municode)
    target_link_options(${name} PRIVATE -municode -static)
    target_link_libraries(${name} PRIVATE uuid)
  endif()
endforeach()

if(TARGET BVConn::Testing)
  file(GLOB sources CONFIGURE_DEPENDS *.cpp quoting/*.cpp)
  foreach(source IN LISTS sources)
    cmake_path(GET source STEM name)
    add_executable(${name} ${source})
    target_link_libraries(${name} PRIVATE BVConn::Testing -static)
  endforeach()
endif()
