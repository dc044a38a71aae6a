# Tests of the source-model bridge (com_model_test.cc): a Windows program,
# GoogleTest built here from Debian's googletest sources, run under Wine by
# `ctest --test-dir build/mingw-<arch>` (the Wine of build.cmake).
find_path(FOLIOSCOPE_GTEST_SOURCE googletest/CMakeLists.txt PATHS /usr/src/googletest
          NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
if(FOLIOSCOPE_GTEST_SOURCE)
  set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  add_subdirectory(${FOLIOSCOPE_GTEST_SOURCE} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  add_executable(com_model_tests ${FS_COM_DIR}/com_model_test.cc ${FS_COM_DIR}/com_model.cc
                                 ${FS_COM_DIR}/late_bound.cc ${FS_COM_DIR}/model_objects.cc
                                 ${FS_COM_DIR}/com_support.cc)
  target_include_directories(com_model_tests PRIVATE ${CMAKE_SOURCE_DIR}/src)
  target_link_libraries(com_model_tests PRIVATE gtest fs_model fs_base ole32 oleaut32 uuid)
  target_link_options(com_model_tests PRIVATE -static -static-libgcc -static-libstdc++)

  if(FOLIOSCOPE_WINE)
    enable_testing()
    add_test(NAME com_model_tests COMMAND ${FOLIOSCOPE_WINE} $<TARGET_FILE:com_model_tests>)
    set_tests_properties(com_model_tests PROPERTIES ENVIRONMENT "${FS_WINE_ENVIRONMENT}"
                                                    TIMEOUT 300 RESOURCE_LOCK wine_prefix)
  endif()
endif()
