# Tests of libfilter_rules (rule text), included from tests/CMakeLists.txt.

# filters_add_rules_gtest(<name> <sources>...): a GoogleTest program of the
# rules library; like filters_add_gtest, but linked to filter_rules.
function(filters_add_rules_gtest name)
  filters_add_gtest(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE FiltersCommon::filter_rules)
endfunction()

filters_add_rules_gtest(rules_roundtrip_test rules_roundtrip_test.cc)
filters_add_rules_gtest(rules_errors_test rules_errors_test.cc)
filters_add_rules_gtest(rules_syntax_test rules_syntax_test.cc)
filters_add_rules_gtest(rules_golden_test rules_golden_test.cc)
target_compile_definitions(rules_golden_test PRIVATE
  RULES_TEST_DATA_DIR="${CMAKE_CURRENT_SOURCE_DIR}/data")

# The C header from a strict C11 client.
filters_add_c_program(rules_c_test rules_c_test.c FiltersCommon::filter_rules)

# show and compile, and rule text read by the other commands, end to end.
if(TARGET filters-tool)
  add_test(NAME rules_cli_test
    COMMAND bash "${CMAKE_CURRENT_SOURCE_DIR}/rules_cli_test.sh"
            "$<TARGET_FILE:filters-tool>"
            "${CMAKE_CURRENT_BINARY_DIR}/rules_cli_test.work")
endif()

# Group differences: the C++ interface, the C headers on their own, and a
# strict C11 client.
filters_add_rules_gtest(rules_diff_test rules_diff_test.cc groups_samples.cc)
filters_add_c_header_checks(FiltersCommon::filter_rules filter_group_diff_c filter_rules_c)
filters_add_c_program(rules_diff_c_program rules_diff_c_program.c FiltersCommon::filter_rules)
