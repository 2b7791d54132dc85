# The peer is ICU's GregorianCalendar (libicu-dev); without ICU this benchmark is off.
find_package(ICU QUIET COMPONENTS uc i18n)
if(ICU_FOUND)
  target_link_libraries(${target} PRIVATE ICU::i18n ICU::uc)
else()
  message(STATUS "ICU not found: ${target} switched off (install libicu-dev)")
  set_target_properties(${target} PROPERTIES EXCLUDE_FROM_ALL TRUE)
endif()
