# Tests of the diagnostics API (names, capabilities, explanations, the C wire
# functions) and of filters-tool, included from tests/CMakeLists.txt.

filters_add_gtest(tool_explain_test tool_explain_test.cc)

if(TARGET filters-tool)
  # The JSON form, input readers, check and demo, linked directly.
  filters_add_gtest(tool_core_test tool_core_test.cc)
  target_link_libraries(tool_core_test PRIVATE filters_tool_core)

  # The command line against real files, each subcommand and its errors.
  add_test(NAME tool_cli_test
    COMMAND bash "${CMAKE_CURRENT_SOURCE_DIR}/tool_cli_test.sh"
            "$<TARGET_FILE:filters-tool>"
            "${CMAKE_CURRENT_BINARY_DIR}/tool_cli_test.work")
endif()

if(TARGET filters-tool)
  # diff end to end: input forms, known differences, exit statuses, errors.
  add_test(NAME tool_diff_test
    COMMAND bash "${CMAKE_CURRENT_SOURCE_DIR}/tool_diff_test.sh"
            "$<TARGET_FILE:filters-tool>"
            "${CMAKE_CURRENT_BINARY_DIR}/tool_diff_test.work")
endif()
