# The formatter's keyword list sfn.dat, written next to the binary (the build
# tree is a working application folder) and installed with the program. The
# formatter restores a missing sfn.dat by itself; shipping it up front keeps
# a read-only installation from needing the write.
# (A cross-build brings its own native fs_write_keywords: cmake/host_tools.cmake.)
if(NOT TARGET fs_write_keywords)
  add_executable(fs_write_keywords ${CMAKE_SOURCE_DIR}/src/format/tools/write_keywords.cc
                 ${CMAKE_SOURCE_DIR}/src/format/keyword_resource.cc)
  target_include_directories(fs_write_keywords PRIVATE ${CMAKE_SOURCE_DIR}/src)
  set_target_properties(fs_write_keywords PROPERTIES RUNTIME_OUTPUT_DIRECTORY
                        ${CMAKE_BINARY_DIR}/tools)
endif()
add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/sfn.dat
                   COMMAND fs_write_keywords ${CMAKE_BINARY_DIR}/sfn.dat
                   DEPENDS fs_write_keywords
                   COMMENT "Writing the keyword list sfn.dat")
add_custom_target(fs_keyword_file ALL DEPENDS ${CMAKE_BINARY_DIR}/sfn.dat)
install(FILES ${CMAKE_BINARY_DIR}/sfn.dat DESTINATION share/folioscope)
