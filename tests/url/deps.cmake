# Most url tests start a server on 127.0.0.1 port 80 or 21, so no two of them may run at
# the same time: every discovered test of this program gets one RESOURCE_LOCK. The tests
# only exist once discovery has run (at test time), so the lock is set by a CTest include
# file queued after the one gtest_discover_tests adds (hence the deferred call); it reads
# the list of names that discovery leaves in <program>_TESTS.
set(zu_url_lock_file ${CMAKE_CURRENT_BINARY_DIR}/${exe}_lock.cmake)
file(WRITE ${zu_url_lock_file}
  "if(${exe}_TESTS)\n"
  "  set_tests_properties(\${${exe}_TESTS} PROPERTIES RESOURCE_LOCK zu_url_ports_80_21)\n"
  "endif()\n")
cmake_language(EVAL CODE
  "cmake_language(DEFER CALL set_property DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES [[${zu_url_lock_file}]])")
