# The Windows Installer package of this build's DLL, with Res\ and sfn.dat:
#   cmake --build --preset mingw-i686 --target msi     build/Folioscope-<version>-x86.msi
#   cmake --build --preset mingw-x86_64 --target msi   build/Folioscope-<version>-x64.msi
# packaging/make_msi.py runs the DLL's own registration under this build's
# Wine and turns it into the package's registry rows; wixl writes the
# package. Not part of the default build: it needs Wine and wixl.
find_package(Python3 COMPONENTS Interpreter)
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(FS_MSI_ARCH x64)
else()
  set(FS_MSI_ARCH x86)
endif()
set(FS_MSI ${CMAKE_SOURCE_DIR}/build/Folioscope-${PROJECT_VERSION}-${FS_MSI_ARCH}.msi)
add_custom_target(
  msi
  COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_SOURCE_DIR}/packaging/make_msi.py
          --arch ${FS_MSI_ARCH} --version ${PROJECT_VERSION} --app-dir ${CMAKE_BINARY_DIR}
          --wine ${FOLIOSCOPE_WINE} --work ${CMAKE_BINARY_DIR}/msi --output ${FS_MSI}
  DEPENDS VBFolioscope fs_report_set_standard fs_keyword_file
  COMMENT "wixl: Folioscope-${PROJECT_VERSION}-${FS_MSI_ARCH}.msi"
  VERBATIM)
