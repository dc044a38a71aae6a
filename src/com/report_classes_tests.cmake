# Tests of the report object, the tag readers and the formatter as COM
# classes (report_classes_test.cc): a Windows program that loads the built
# VBFolioscope.dll, run under Wine by `ctest --test-dir build/mingw-<arch>`.
# Uses the GoogleTest targets that com_model_tests.cmake builds from Debian's
# googletest sources.
if(TARGET gtest)
  add_executable(report_classes_tests ${FS_COM_DIR}/report_classes_test.cc ${FS_COM_IIDS}
                                      ${FS_COM_HEADER})
  target_include_directories(report_classes_tests PRIVATE ${CMAKE_SOURCE_DIR}/src ${FS_COM_GEN})
  target_link_libraries(report_classes_tests PRIVATE gtest ole32 oleaut32 uuid)
  target_link_options(report_classes_tests PRIVATE -static -static-libgcc -static-libstdc++)
  add_dependencies(report_classes_tests VBFolioscope)

  if(FOLIOSCOPE_WINE)
    enable_testing()
    add_test(NAME report_classes_tests
             COMMAND ${FOLIOSCOPE_WINE} $<TARGET_FILE:report_classes_tests>
                     $<TARGET_FILE:VBFolioscope>)
    set_tests_properties(report_classes_tests PROPERTIES ENVIRONMENT "${FS_WINE_ENVIRONMENT}"
                                                         TIMEOUT 300 RESOURCE_LOCK wine_prefix)
  endif()
endif()
