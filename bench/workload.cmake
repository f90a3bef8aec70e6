# The benchmark workload as a small static library, shared by the benchmarks,
# the tests and the fuzzers.
add_library(filters_workload STATIC "${CMAKE_CURRENT_LIST_DIR}/workload.cc")
target_include_directories(filters_workload PUBLIC "${CMAKE_CURRENT_LIST_DIR}")
target_link_libraries(filters_workload PUBLIC FiltersCommon::filter_common)
filters_set_warnings(filters_workload)

# Writes a workload group's bytes to a file, e.g. as a fuzzing seed:
#   filters-workload COUNT SEED FILE
add_executable(filters-workload "${CMAKE_CURRENT_LIST_DIR}/workload_main.cc")
target_link_libraries(filters-workload PRIVATE filters_workload)
filters_set_warnings(filters-workload)
