# The Clang that the project is held to, version 14, or else the one that the system has.
find_program(BVCONN_CLANG NAMES clang++-14 clang++ REQUIRED)
set(CMAKE_CXX_COMPILER "${BVCONN_CLANG}")
