# In a cross-build the tools that write the application folder (sfn.dat, the
# encrypted report set in Res/) cannot run on the build machine. They are
# built a second time with the machine's own compiler, as an external
# project, and stand in for the targets of the same name: a custom command
# whose COMMAND names fs_write_keywords or fs_encrypt_template runs the
# native program.
include(ExternalProject)

set(FOLIOSCOPE_HOST_TOOLS_DIR ${CMAKE_BINARY_DIR}/host-tools)
set(FOLIOSCOPE_HOST_TOOLS fs_write_keywords fs_encrypt_template)
set(host_tool_paths "")
foreach(tool ${FOLIOSCOPE_HOST_TOOLS})
  list(APPEND host_tool_paths ${FOLIOSCOPE_HOST_TOOLS_DIR}/${tool})
endforeach()

ExternalProject_Add(fs_host_tools
  SOURCE_DIR ${CMAKE_SOURCE_DIR}/cmake/host_tools
  BINARY_DIR ${FOLIOSCOPE_HOST_TOOLS_DIR}
  CMAKE_ARGS -DFOLIOSCOPE_SOURCE_DIR=${CMAKE_SOURCE_DIR} -DCMAKE_BUILD_TYPE=Release
             -DCMAKE_CXX_COMPILER=c++
  INSTALL_COMMAND ""
  # Rebuilt on every build so that edits of the tools' sources are picked up;
  # the inner build is a no-op when nothing changed.
  BUILD_ALWAYS ON
  BUILD_BYPRODUCTS ${host_tool_paths})

foreach(tool ${FOLIOSCOPE_HOST_TOOLS})
  add_executable(${tool} IMPORTED GLOBAL)
  set_target_properties(${tool} PROPERTIES IMPORTED_LOCATION ${FOLIOSCOPE_HOST_TOOLS_DIR}/${tool})
  add_dependencies(${tool} fs_host_tools)
endforeach()
