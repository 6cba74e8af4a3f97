# Tests that need gigabytes of memory, one at a time. The presets leave them out; to run them:
# ctest --preset large
add_executable(large_messages_test large_messages_test.cpp)
target_link_libraries(large_messages_test PRIVATE filter_common GTest::gtest_main)
filter_common_warnings(large_messages_test)
gtest_discover_tests(large_messages_test TEST_PREFIX large_messages_test. DISCOVERY_TIMEOUT 60
  PROPERTIES LABELS large RUN_SERIAL ON)
