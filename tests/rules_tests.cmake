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

# The C header from a strict C11 client, every warning an error.
add_executable(rules_c_test rules_c_test.c)
target_link_libraries(rules_c_test PRIVATE FiltersCommon::filter_rules)
set_target_properties(rules_c_test PROPERTIES C_STANDARD 11 C_STANDARD_REQUIRED ON C_EXTENSIONS OFF)
target_compile_options(rules_c_test PRIVATE -Wall -Wextra -Wpedantic -Werror)
add_test(NAME rules_c_test COMMAND rules_c_test)
if(FILTERS_VALGRIND AND NOT FILTERS_SANITIZE)
  add_test(NAME rules_c_test_valgrind
    COMMAND ${FILTERS_VALGRIND} --leak-check=full --error-exitcode=1
            --errors-for-leak-kinds=definite,indirect $<TARGET_FILE:rules_c_test>)
endif()

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
foreach(c_header filter_group_diff_c filter_rules_c)
  add_library(c_api_header_${c_header} OBJECT c_api_header_c11.c)
  target_compile_definitions(c_api_header_${c_header} PRIVATE FILTERS_C_HEADER="FiltersCommon/${c_header}.h")
  target_link_libraries(c_api_header_${c_header} PRIVATE FiltersCommon::filter_rules)
  set_target_properties(c_api_header_${c_header} PROPERTIES C_STANDARD 11 C_STANDARD_REQUIRED ON C_EXTENSIONS OFF)
  target_compile_options(c_api_header_${c_header} PRIVATE -Wall -Wextra -Wpedantic -Werror)
endforeach()
add_executable(rules_diff_c_program rules_diff_c_program.c)
target_link_libraries(rules_diff_c_program PRIVATE FiltersCommon::filter_rules)
set_target_properties(rules_diff_c_program PROPERTIES
  C_STANDARD 11 C_STANDARD_REQUIRED ON C_EXTENSIONS OFF)
target_compile_options(rules_diff_c_program PRIVATE -Wall -Wextra -Wpedantic -Werror)
add_test(NAME rules_diff_c_program COMMAND rules_diff_c_program)
if(FILTERS_VALGRIND AND NOT FILTERS_SANITIZE)
  add_test(NAME rules_diff_c_program_valgrind
    COMMAND ${FILTERS_VALGRIND} --leak-check=full --error-exitcode=1
            --errors-for-leak-kinds=definite,indirect
            $<TARGET_FILE:rules_diff_c_program>)
endif()
