# Tests that need gigabytes of memory. The presets leave them out; to run them:
# ctest --preset large
add_executable(large_messages_test large_messages_test.cpp)
target_link_libraries(large_messages_test PRIVATE filter_common GTest::gtest_main)
filter_common_warnings(large_messages_test)
add_test(NAME large_messages_test COMMAND large_messages_test)
set_tests_properties(large_messages_test PROPERTIES LABELS large)
