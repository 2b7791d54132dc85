# Most url tests serve on 127.0.0.1 port 80 or 21: one RESOURCE_LOCK on every test of the
# program. Tests exist only after discovery, so a CTest include file queued after gtest's
# own (deferred call) sets the lock on the names discovery leaves in <program>_TESTS.
set(zu_url_lock_file ${CMAKE_CURRENT_BINARY_DIR}/${exe}_lock.cmake)
file(WRITE ${zu_url_lock_file}
  "if(${exe}_TESTS)\n"
  "  set_tests_properties(\${${exe}_TESTS} PROPERTIES RESOURCE_LOCK zu_url_ports_80_21)\n"
  "endif()\n")
cmake_language(EVAL CODE "cmake_language(DEFER CALL set_property DIRECTORY APPEND PROPERTY
  TEST_INCLUDE_FILES [[${zu_url_lock_file}]])")
