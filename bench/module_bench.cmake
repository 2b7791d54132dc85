# The benchmark loads copies of the sample greeter module.
add_library(zu_bench_module MODULE ${PROJECT_SOURCE_DIR}/examples/modules/greeter.cpp)
target_link_libraries(zu_bench_module PRIVATE zu::zu)
set_target_properties(zu_bench_module PROPERTIES PREFIX "" OUTPUT_NAME bench_module)
add_dependencies(${target} zu_bench_module)
target_compile_definitions(${target} PRIVATE
  ZU_BENCH_MODULE="$<TARGET_FILE:zu_bench_module>")
