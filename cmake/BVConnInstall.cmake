# What is installed, and where. Each rule belongs to one of five components, so that a package can
# take them apart: BVConn_runtime (the shared library), BVConn_development (headers, the static
# library, what find_package and pkg-config read), BVConn_tools, BVConn_documentation and
# BVConn_reference.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(BVCONN_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/BVConn" CACHE STRING
    "Where the files for find_package go")
set(BVCONN_INSTALL_DOCDIR "${CMAKE_INSTALL_DATAROOTDIR}/doc/bvconn" CACHE STRING
    "Where the guides and the examples go")
mark_as_advanced(BVCONN_INSTALL_CMAKEDIR BVCONN_INSTALL_DOCDIR)

# bvconn_install_libraries(): the libraries that are there, their headers, and how they are found.
# Each kind has an export set of its own, so that both can lie in one prefix and be built apart.
function(bvconn_install_libraries)
  set(development COMPONENT BVConn_development)
  set(exports "")
  if(TARGET BVConn)
    install(TARGETS BVConn EXPORT BVConn-shared-targets
      LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT BVConn_runtime
              NAMELINK_COMPONENT BVConn_development
      FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" ${development})
    list(APPEND exports shared)
  endif()
  if(TARGET BVConnStatic)
    install(TARGETS BVConnStatic EXPORT BVConn-static-targets
      ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" ${development}
      FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" ${development})
    list(APPEND exports static)
  endif()
  install(TARGETS BVConnTesting EXPORT BVConn-testing-targets
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" ${development}
    FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" ${development})
  foreach(export IN LISTS exports ITEMS testing)
    install(EXPORT BVConn-${export}-targets NAMESPACE BVConn::
      DESTINATION "${BVCONN_INSTALL_CMAKEDIR}" ${development})
  endforeach()

  set(built "${CMAKE_CURRENT_BINARY_DIR}/install")
  configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/BVConnConfig.cmake.in"
    "${built}/BVConnConfig.cmake" INSTALL_DESTINATION "${BVCONN_INSTALL_CMAKEDIR}"
    NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
  # As long as the first number of the version, and so the library's soname, stays.
  write_basic_package_version_file("${built}/BVConnConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
  install(FILES "${built}/BVConnConfig.cmake" "${built}/BVConnConfigVersion.cmake"
    DESTINATION "${BVCONN_INSTALL_CMAKEDIR}" ${development})

  # From the folder of the file, so that the prefix can be moved. A folder that was given with its whole
  # path stays where it is.
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
    BASE_DIRECTORY "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" OUTPUT_VARIABLE prefix)
  foreach(folder includedir libdir)
    string(TOUPPER ${folder} place)
    set(${folder} "${CMAKE_INSTALL_${place}}")
    if(NOT IS_ABSOLUTE "${${folder}}")
      set(${folder} "\${prefix}/${${folder}}")
    endif()
  endforeach()
  set(private_libraries -pthread)
  if(WIN32)
    string(APPEND private_libraries " -lole32 -loleaut32 -luuid")
  endif()
  configure_file("${PROJECT_SOURCE_DIR}/cmake/bvconn.pc.in" "${built}/bvconn.pc" @ONLY)
  install(FILES "${built}/bvconn.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" ${development})
endfunction()

# bvconn_install_program(TARGET): a program with its man page. It finds the library beside itself,
# wherever both are moved to.
function(bvconn_install_program target)
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR
    BASE_DIRECTORY "${CMAKE_INSTALL_FULL_BINDIR}" OUTPUT_VARIABLE libraries)
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")
  install(TARGETS ${target} RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT BVConn_tools)
  install(FILES "${PROJECT_SOURCE_DIR}/docs/man/${target}.1"
    DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT BVConn_tools)
endfunction()

# bvconn_install_completions(TARGET): the completion scripts that a program prints of itself, where
# the shells look for them.
function(bvconn_install_completions target)
  set(bash "bash-completion/completions/${target}")
  set(zsh "zsh/site-functions/_${target}")
  set(fish "fish/vendor_completions.d/${target}.fish")
  set(scripts "")
  foreach(shell bash zsh fish)
    cmake_path(GET ${shell} PARENT_PATH folder)
    set(script "${CMAKE_CURRENT_BINARY_DIR}/completions/${${shell}}")
    add_custom_command(OUTPUT "${script}"
      COMMAND "${CMAKE_COMMAND}" -E make_directory "${CMAKE_CURRENT_BINARY_DIR}/completions/${folder}"
      COMMAND ${target} completion ${shell} > "${script}"
      DEPENDS ${target} VERBATIM)
    install(FILES "${script}" DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/${folder}"
      COMPONENT BVConn_tools)
    list(APPEND scripts "${script}")
  endforeach()
  add_custom_target(${target}_completions ALL DEPENDS ${scripts})
endfunction()

# bvconn_install_documents(): the guides for those who use the library, and the examples as they are
# built from an installed package. The README of the sources leads through these; the one that is
# installed is docs/installed.md, whose links are led one folder down.
function(bvconn_install_documents)
  set(documentation DESTINATION "${BVCONN_INSTALL_DOCDIR}" COMPONENT BVConn_documentation)
  set(page "${PROJECT_SOURCE_DIR}/docs/installed.md")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${page}")
  file(READ "${page}" text)
  string(REGEX REPLACE "\\]\\(([a-z-]+\\.md)" "](docs/\\1" text "${text}")
  string(REPLACE "](../" "](" text "${text}")
  file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/install/README.md" CONTENT "${text}" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/install/README.md" "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
    ${documentation})
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs" ${documentation}
    FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "installed.md" EXCLUDE
    # These are for work on the sources.
    PATTERN "adding-an-operation.md" EXCLUDE PATTERN "rooms.md" EXCLUDE
    PATTERN "man" EXCLUDE PATTERN "reference" EXCLUDE)
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples" ${documentation}
    USE_SOURCE_PERMISSIONS FILES_MATCHING PATTERN "*.cpp" PATTERN "*.c"
    # One is a project of its own.
    PATTERN "*.sh" PATTERN "quoting/CMakeLists.txt"
    # For Windows.
    PATTERN "*.vbs" PATTERN "*.js" PATTERN "*.pas")
  install(FILES "${PROJECT_SOURCE_DIR}/cmake/BVConnExamples.cmake" RENAME CMakeLists.txt
    DESTINATION "${BVCONN_INSTALL_DOCDIR}/examples" COMPONENT BVConn_documentation)
endfunction()

# bvconn_install_reference(): the target bvconn_reference makes the pages of HTML, with Python and
# Doxygen, in docs/html of the build folder. It takes a minute or two and belongs to no other target;
# what it has made is installed.
function(bvconn_install_reference)
  find_package(Python3 3.9 COMPONENTS Interpreter QUIET)
  if(NOT Python3_FOUND)
    return()
  endif()
  set(html "${PROJECT_BINARY_DIR}/docs/html")
  add_custom_target(bvconn_reference
    COMMAND Python3::Interpreter -B "${PROJECT_SOURCE_DIR}/docs/reference/generate.py"
            --build "${PROJECT_BINARY_DIR}" --out "${html}"
    COMMENT "Making the pages; each example runs against a sandbox of its own"
    DEPENDS bvconn bvsandbox USES_TERMINAL VERBATIM)
  if(BVCONN_INSTALL)
    install(DIRECTORY "${html}" DESTINATION "${BVCONN_INSTALL_DOCDIR}"
      COMPONENT BVConn_reference OPTIONAL)
  endif()
endfunction()
