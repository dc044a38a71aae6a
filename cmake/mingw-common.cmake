# Cross-build for Windows with MinGW-w64 (Debian's mingw-w64 packages),
# shared by the 32- and 64-bit toolchain files, which set
# CMAKE_SYSTEM_PROCESSOR and FOLIOSCOPE_MINGW_TRIPLE before including it.
#
# The "-posix" flavour of the compilers is used: g++ 12's "-win32" flavour
# has no std::mutex / std::thread, and the formatter's keyword cache is
# guarded by a std::mutex. Linked statically (see the top-level
# CMakeLists.txt), the flavour adds no winpthread DLL to the imports.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${FOLIOSCOPE_MINGW_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${FOLIOSCOPE_MINGW_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${FOLIOSCOPE_MINGW_TRIPLE}-windres)
# The type library compiler (mingw-w64-tools).
find_program(FOLIOSCOPE_WIDL ${FOLIOSCOPE_MINGW_TRIPLE}-widl REQUIRED)

set(CMAKE_FIND_ROOT_PATH /usr/${FOLIOSCOPE_MINGW_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
