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
