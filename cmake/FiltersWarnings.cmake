# Warning flags for our own targets. Generated protocol-buffers code is
# compiled without them (see protobuf/CMakeLists.txt).
function(filters_set_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
  if(FILTERS_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
