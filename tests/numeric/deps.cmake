# The sums have portable and AVX-512 kernels; run the suite a second time on the portable
# ones (the first run takes the wide ones where the processor has them).
gtest_discover_tests(${exe} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 TEST_PREFIX "portable."
  PROPERTIES TIMEOUT 120 LABELS ${sub} ENVIRONMENT "ZU_NUMERIC_PORTABLE=1")
