# The decimal benchmark compares with Boost.Multiprecision's cpp_dec_float_50 (headers only).
find_package(Boost QUIET)
if(Boost_FOUND)
  target_link_libraries(${target} PRIVATE Boost::boost)
else()
  message(STATUS "Boost headers not found: ${target} runs without its peer (install libboost-dev)")
endif()
