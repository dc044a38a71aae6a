# The Windows form of the component: the in-process COM server
# VBFolioscope.dll. Included by the top-level CMakeLists.txt in a Windows
# (MinGW-w64 cross) build, after the component layers are defined.
#
# widl compiles VBFolioscope.idl (with its two fragments) into the type
# library, the C++ header of its interfaces and the file of their ids; the
# type library is embedded as resource 1 TYPELIB through VBFolioscope.rc.
# The server's sources are compiled straight into the DLL so that every
# class's static registration object is kept.

set(FS_COM_DIR ${CMAKE_SOURCE_DIR}/src/com)
set(FS_COM_GEN ${CMAKE_BINARY_DIR}/com_generated)
file(MAKE_DIRECTORY ${FS_COM_GEN})

if(NOT FOLIOSCOPE_WIDL)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    find_program(FOLIOSCOPE_WIDL NAMES x86_64-w64-mingw32-widl widl REQUIRED)
  else()
    find_program(FOLIOSCOPE_WIDL NAMES i686-w64-mingw32-widl widl REQUIRED)
  endif()
endif()
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(FS_WIDL_TARGET --win64)
else()
  set(FS_WIDL_TARGET --win32)
endif()

# oaidl.idl / ocidl.idl come with Wine's development files (libwine-dev);
# stdole2.tlb, which the library imports, with Wine itself.
find_path(FOLIOSCOPE_IDL_INCLUDE oaidl.idl
          PATHS /usr/include/wine/wine/windows /usr/include/wine/windows
                /usr/${FOLIOSCOPE_MINGW_TRIPLE}/include /usr/share/mingw-w64/include
          NO_CMAKE_FIND_ROOT_PATH REQUIRED)
find_path(FOLIOSCOPE_STDOLE2_DIR stdole2.tlb
          PATHS /usr/lib/x86_64-linux-gnu/wine/x86_64-windows
                /usr/lib/i386-linux-gnu/wine/i386-windows /usr/lib/wine/x86_64-windows
                /usr/lib/wine/i386-windows /usr/lib/x86_64-linux-gnu/wine
          NO_CMAKE_FIND_ROOT_PATH REQUIRED)

set(FS_COM_IDL ${FS_COM_DIR}/VBFolioscope.idl)
set(FS_COM_TLB ${FS_COM_GEN}/VBFolioscope.tlb)
set(FS_COM_HEADER ${FS_COM_GEN}/VBFolioscope.h)
set(FS_COM_IIDS ${FS_COM_GEN}/VBFolioscope_i.c)
add_custom_command(
  OUTPUT ${FS_COM_TLB} ${FS_COM_HEADER} ${FS_COM_IIDS}
  COMMAND ${FOLIOSCOPE_WIDL} ${FS_WIDL_TARGET} -I ${FS_COM_DIR} -I ${FOLIOSCOPE_IDL_INCLUDE}
          -L ${FOLIOSCOPE_STDOLE2_DIR} -t -h -u -T ${FS_COM_TLB} -H ${FS_COM_HEADER}
          -U ${FS_COM_IIDS} ${FS_COM_IDL}
  DEPENDS ${FS_COM_IDL} ${FS_COM_DIR}/report_classes.idl ${FS_COM_DIR}/model_classes.idl
  COMMENT "widl: type library VBFolioscope"
  VERBATIM)
# The project is C++ only: the id file is compiled as C++ (widl writes it for
# both languages).
set_source_files_properties(${FS_COM_IIDS} PROPERTIES LANGUAGE CXX GENERATED TRUE)
set_source_files_properties(${FS_COM_DIR}/VBFolioscope.rc PROPERTIES OBJECT_DEPENDS
                                                                    ${FS_COM_TLB})

file(GLOB FS_COM_SOURCES CONFIGURE_DEPENDS ${FS_COM_DIR}/*.cc)
list(FILTER FS_COM_SOURCES EXCLUDE REGEX "_test\\.cc$")
add_library(VBFolioscope SHARED ${FS_COM_SOURCES} ${FS_COM_IIDS} ${FS_COM_HEADER}
                                ${FS_COM_DIR}/VBFolioscope.rc ${FS_COM_DIR}/VBFolioscope.def)
set_target_properties(VBFolioscope PROPERTIES PREFIX "" OUTPUT_NAME VBFolioscope)
target_include_directories(VBFolioscope PRIVATE ${CMAKE_SOURCE_DIR}/src ${FS_COM_GEN})
# (windres finds VBFolioscope.tlb through the same include path.)
target_link_libraries(VBFolioscope PRIVATE folioscope_component ole32 oleaut32 uuid advapi32
                                           shell32 user32)
# One self-contained DLL: the C and C++ runtimes linked in. On i686 the .def
# names the entry points without their stdcall decoration; the fix-up maps
# them silently.
target_link_options(VBFolioscope PRIVATE -static -static-libgcc -static-libstdc++)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  target_link_options(VBFolioscope PRIVATE -Wl,--enable-stdcall-fixup)
endif()

# The Wine that runs this build's Windows programs: 64-bit Wine for the
# x86_64 build, 32-bit Wine (cmake/wine32.cmake) for the i686 build.
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  find_program(FOLIOSCOPE_WINE wine)
  set(FS_WINE_ENVIRONMENT "WINEPREFIX=${CMAKE_BINARY_DIR}/wine-prefix;WINEDEBUG=-all")
else()
  include(${CMAKE_SOURCE_DIR}/cmake/wine32.cmake)
  set(FOLIOSCOPE_WINE ${FOLIOSCOPE_WINE32})
  set(FS_WINE_ENVIRONMENT
      "WINEPREFIX=${CMAKE_BINARY_DIR}/wine-prefix;WINEARCH=win32;WINEDEBUG=-all;DISPLAY=")
endif()
include(${FS_COM_DIR}/com_model_tests.cmake)
include(${FS_COM_DIR}/report_classes_tests.cmake)
if(TARGET gtest)
  # Checks of the server's machinery, run under Windows or Wine with the
  # DLL's path: com_server_test <VBFolioscope.dll> [--registration]. Uses the
  # GoogleTest targets of com_model_tests.cmake.
  add_executable(com_server_test ${FS_COM_DIR}/com_server_test.cc ${FS_COM_DIR}/com_support.cc
                                 ${FS_COM_IIDS} ${FS_COM_HEADER})
  target_include_directories(com_server_test PRIVATE ${CMAKE_SOURCE_DIR}/src ${FS_COM_GEN})
  target_link_libraries(com_server_test PRIVATE folioscope_component gtest ole32 oleaut32 uuid advapi32
                                                shell32 user32)
  target_link_options(com_server_test PRIVATE -static -static-libgcc -static-libstdc++)
  add_dependencies(com_server_test VBFolioscope)
  if(FOLIOSCOPE_WINE)
    enable_testing()
    add_test(NAME com_server_test COMMAND ${FOLIOSCOPE_WINE} $<TARGET_FILE:com_server_test>
                                          $<TARGET_FILE:VBFolioscope>)
    set_tests_properties(com_server_test PROPERTIES ENVIRONMENT "${FS_WINE_ENVIRONMENT}"
                                                    TIMEOUT 300 RESOURCE_LOCK wine_prefix)
  endif()
endif()
include(${CMAKE_SOURCE_DIR}/cmake/msi.cmake)
