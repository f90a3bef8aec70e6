# The ABI of every shared library is recorded in abi/<library>.abi and each
# build is compared with it by scripts/abi-check.sh. This writes the list
# that script reads: the public header directories, which limit the
# comparison to what callers can see, and each library's file.
get_property(FILTERS_ABI_LIBRARIES GLOBAL PROPERTY FILTERS_RUNTIME_LIBRARIES)
# Only the project's own header directories, not those of its dependencies.
set(own "")
foreach(dir "${PROJECT_SOURCE_DIR}" "${PROJECT_BINARY_DIR}")
  string(REGEX REPLACE "([][+.*()^$?|\\])" "\\\\\\1" dir "${dir}")
  list(APPEND own "^${dir}/")
endforeach()
list(JOIN own "|" own)
set(manifest "")
foreach(library ${FILTERS_ABI_LIBRARIES})
  string(APPEND manifest "headers $<JOIN:$<REMOVE_DUPLICATES:$<FILTER:"
    "$<TARGET_PROPERTY:${library},INTERFACE_INCLUDE_DIRECTORIES>,INCLUDE,${own}>>,"
    "\nheaders >\n")
endforeach()
foreach(library ${FILTERS_ABI_LIBRARIES})
  string(APPEND manifest "library ${library} $<TARGET_FILE:${library}>\n")
endforeach()
file(GENERATE OUTPUT "${PROJECT_BINARY_DIR}/abi-libraries.txt"
     CONTENT "${manifest}")
