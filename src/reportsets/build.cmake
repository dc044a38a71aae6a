# The shipped report set "Standard": the plain templates and Description.dat
# of res/Standard are encrypted into ${CMAKE_BINARY_DIR}/Res/Standard (the
# build tree is a working application folder); IndexComment.ini and the
# resource files (style sheet, script, pictures) are copied as they are.
# (A cross-build brings its own native fs_encrypt_template: cmake/host_tools.cmake.)
if(NOT TARGET fs_encrypt_template)
  add_executable(fs_encrypt_template ${CMAKE_SOURCE_DIR}/src/reportsets/tools/encrypt_template.cc
                 ${CMAKE_SOURCE_DIR}/src/reportsets/winapi_crypt.cc
                 ${CMAKE_SOURCE_DIR}/src/reportsets/md5.cc ${CMAKE_SOURCE_DIR}/src/reportsets/rc4.cc)
  target_include_directories(fs_encrypt_template PRIVATE ${CMAKE_SOURCE_DIR}/src)
  set_target_properties(fs_encrypt_template PROPERTIES RUNTIME_OUTPUT_DIRECTORY
                        ${CMAKE_BINARY_DIR}/tools)
endif()

set(FS_STANDARD_SOURCE ${CMAKE_SOURCE_DIR}/res/Standard)
set(FS_STANDARD_TARGET ${CMAKE_BINARY_DIR}/Res/Standard)
file(GLOB FS_STANDARD_TEMPLATES CONFIGURE_DEPENDS ${FS_STANDARD_SOURCE}/*.htm)
file(GLOB FS_STANDARD_RESOURCES CONFIGURE_DEPENDS ${FS_STANDARD_SOURCE}/*.css
     ${FS_STANDARD_SOURCE}/*.js ${FS_STANDARD_SOURCE}/*.jpg)

set(FS_STANDARD_OUTPUTS)
foreach(source ${FS_STANDARD_TEMPLATES} ${FS_STANDARD_SOURCE}/Description.dat)
  get_filename_component(name ${source} NAME)
  add_custom_command(OUTPUT ${FS_STANDARD_TARGET}/${name}
                     COMMAND ${CMAKE_COMMAND} -E make_directory ${FS_STANDARD_TARGET}
                     COMMAND fs_encrypt_template ${source} ${FS_STANDARD_TARGET}/${name}
                     DEPENDS fs_encrypt_template ${source}
                     COMMENT "Encrypting report-set file ${name}")
  list(APPEND FS_STANDARD_OUTPUTS ${FS_STANDARD_TARGET}/${name})
endforeach()
foreach(source ${FS_STANDARD_RESOURCES})
  get_filename_component(name ${source} NAME)
  add_custom_command(OUTPUT ${FS_STANDARD_TARGET}/${name}
                     COMMAND ${CMAKE_COMMAND} -E make_directory ${FS_STANDARD_TARGET}
                     COMMAND ${CMAKE_COMMAND} -E copy ${source} ${FS_STANDARD_TARGET}/${name}
                     DEPENDS ${source})
  list(APPEND FS_STANDARD_OUTPUTS ${FS_STANDARD_TARGET}/${name})
endforeach()
add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/Res/IndexComment.ini
                   COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/Res
                   COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_SOURCE_DIR}/res/IndexComment.ini
                           ${CMAKE_BINARY_DIR}/Res/IndexComment.ini
                   DEPENDS ${CMAKE_SOURCE_DIR}/res/IndexComment.ini)
add_custom_target(fs_report_set_standard ALL
                  DEPENDS ${FS_STANDARD_OUTPUTS} ${CMAKE_BINARY_DIR}/Res/IndexComment.ini)
# Whatever links the template library finds a complete application folder.
add_dependencies(fs_reportsets fs_report_set_standard)

install(FILES ${CMAKE_BINARY_DIR}/Res/IndexComment.ini DESTINATION share/folioscope/Res)
install(FILES ${FS_STANDARD_OUTPUTS} DESTINATION share/folioscope/Res/Standard)
