# Loadable test modules, all built from one source: plain.so, refuse.so (its entry point
# refuses the load) and noentry.so (no entry point). The tests copy them under other
# names next to descriptor files in temporary directories.
set(ZU_TEST_MODULE_DIR ${CMAKE_CURRENT_BINARY_DIR}/test_modules)
foreach(kind plain refuse noentry)
  add_library(zu_test_module_${kind} MODULE ${CMAKE_CURRENT_SOURCE_DIR}/module/modules/test_module.cpp)
  target_link_libraries(zu_test_module_${kind} PRIVATE zu::zu ${CMAKE_DL_LIBS})
  set_target_properties(zu_test_module_${kind} PROPERTIES PREFIX "" OUTPUT_NAME ${kind}
    LIBRARY_OUTPUT_DIRECTORY ${ZU_TEST_MODULE_DIR})
  zu_set_warnings(zu_test_module_${kind})
  zu_set_sanitizers(zu_test_module_${kind})
  add_dependencies(${exe} zu_test_module_${kind})
endforeach()
target_compile_definitions(zu_test_module_refuse PRIVATE ZU_TEST_REFUSE)
target_compile_definitions(zu_test_module_noentry PRIVATE ZU_TEST_NO_ENTRY)
target_compile_definitions(${exe} PRIVATE ZU_TEST_MODULE_DIR="${ZU_TEST_MODULE_DIR}")
