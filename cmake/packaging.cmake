# Installation and the Debian package of the command-line host.
#
# cmake --install puts the program in bin/, the report sets and sfn.dat in
# share/folioscope/ (where the program looks beside <exe>/..; the rules for
# those two live with the build steps that write them), the man page and
# the bash completion. `cmake --build build --target package` makes
# folioscope_<version>_amd64.deb with CPack.

# The sanitizer build is for the tests only.
if(FOLIOSCOPE_SANITIZE)
  return()
endif()

install(TARGETS folioscope RUNTIME DESTINATION bin)

# The man page and the bash completion are written by the built program.
set(FS_MAN_PAGE ${CMAKE_BINARY_DIR}/folioscope.1)
add_custom_command(
  OUTPUT ${FS_MAN_PAGE}
  COMMAND ${CMAKE_COMMAND} -DFOLIOSCOPE=$<TARGET_FILE:folioscope> -DOUTPUT=${FS_MAN_PAGE}
          -P ${CMAKE_SOURCE_DIR}/cmake/man_page.cmake
  DEPENDS folioscope ${CMAKE_SOURCE_DIR}/cmake/man_page.cmake
  COMMENT "help2man: folioscope.1"
  VERBATIM)
set(FS_BASH_COMPLETION ${CMAKE_BINARY_DIR}/completion/folioscope)
add_custom_command(
  OUTPUT ${FS_BASH_COMPLETION}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/completion
  COMMAND sh -c "\"$0\" --bash-completion > \"$1\"" $<TARGET_FILE:folioscope> ${FS_BASH_COMPLETION}
  DEPENDS folioscope
  COMMENT "bash completion of folioscope"
  VERBATIM)
add_custom_target(folioscope_docs ALL DEPENDS ${FS_MAN_PAGE} ${FS_BASH_COMPLETION})

# Debian installs man pages compressed; lintian asks for it.
set(FS_MAN_PAGE_GZ ${CMAKE_BINARY_DIR}/folioscope.1.gz)
add_custom_command(
  OUTPUT ${FS_MAN_PAGE_GZ}
  COMMAND sh -c "gzip -9n < \"$0\" > \"$1\"" ${FS_MAN_PAGE} ${FS_MAN_PAGE_GZ}
  DEPENDS ${FS_MAN_PAGE}
  VERBATIM)
add_custom_target(folioscope_man_gz ALL DEPENDS ${FS_MAN_PAGE_GZ})
install(FILES ${FS_MAN_PAGE_GZ} DESTINATION share/man/man1)
install(FILES ${FS_BASH_COMPLETION} DESTINATION share/bash-completion/completions)

# The Debian package's copyright file and a changelog, as Debian policy wants
# them for every package (lintian checks both).
set(FS_DOC_DIR share/doc/folioscope)
install(FILES ${CMAKE_SOURCE_DIR}/packaging/copyright DESTINATION ${FS_DOC_DIR})
set(FS_CHANGELOG_GZ ${CMAKE_BINARY_DIR}/changelog.gz)
add_custom_command(
  OUTPUT ${FS_CHANGELOG_GZ}
  COMMAND sh -c "gzip -9n < \"$0\" > \"$1\"" ${CMAKE_SOURCE_DIR}/packaging/changelog.Debian
          ${FS_CHANGELOG_GZ}
  DEPENDS ${CMAKE_SOURCE_DIR}/packaging/changelog.Debian
  VERBATIM)
add_custom_target(folioscope_changelog ALL DEPENDS ${FS_CHANGELOG_GZ})
install(FILES ${FS_CHANGELOG_GZ} DESTINATION ${FS_DOC_DIR})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME folioscope)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "Folioscope developers <support@folioscope.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "documentation reports for Visual Basic 6 projects")
set(CPACK_PACKAGE_DESCRIPTION
    "Folioscope turns the '/// doc comments of a Visual Basic 6 project into a\n"
    "browsable frame-set web report and a compiled HTML Help file, in German or\n"
    "English, from report-set templates.")
string(JOIN "" CPACK_PACKAGE_DESCRIPTION ${CPACK_PACKAGE_DESCRIPTION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# chmcmd compiles the help files of `folioscope chm`.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS fp-utils)
set(CPACK_STRIP_FILES ON)
# Directories 0755, files 0644 whatever the umask of the build.
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ
    GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR})
include(CPack)
