# The differential test compares with ICU's GregorianCalendar (libicu-dev, test only).
# Without ICU the test is built but skips itself.
find_package(ICU QUIET COMPONENTS uc i18n)
if(ICU_FOUND)
  target_link_libraries(${exe} PRIVATE ICU::i18n ICU::uc)
  target_compile_definitions(${exe} PRIVATE ZU_HAVE_ICU=1)
else()
  message(STATUS "ICU not found: the calendar differential test will skip (install libicu-dev)")
endif()
