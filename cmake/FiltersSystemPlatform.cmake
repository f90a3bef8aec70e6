# Links an installed implementation of the policer and limid libraries
# instead of the bundled one. It must provide the headers policer/policer.h
# and limid/limid.h and the libraries policer_common, limidmgr_decode and
# limidmgr_encode; FILTERS_PLATFORM_ROOT may point at its prefix.

function(_filters_import_platform target header)
  if(TARGET FiltersCommon::${target})
    return()
  endif()
  find_library(FILTERS_${target}_LIBRARY NAMES ${target}
               HINTS "${FILTERS_PLATFORM_ROOT}" PATH_SUFFIXES lib lib64)
  find_path(FILTERS_${target}_INCLUDE_DIR NAMES ${header}
            HINTS "${FILTERS_PLATFORM_ROOT}" PATH_SUFFIXES include)
  if(NOT FILTERS_${target}_LIBRARY OR NOT FILTERS_${target}_INCLUDE_DIR)
    message(FATAL_ERROR
      "System platform library ${target} (${header}) not found; "
      "set FILTERS_PLATFORM_ROOT or use FILTERS_PLATFORM_PROVIDER=bundled")
  endif()
  add_library(FiltersCommon::${target} SHARED IMPORTED GLOBAL)
  set_target_properties(FiltersCommon::${target} PROPERTIES
    IMPORTED_LOCATION "${FILTERS_${target}_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${FILTERS_${target}_INCLUDE_DIR}")
endfunction()

_filters_import_platform(policer_common policer/policer.h)
_filters_import_platform(limidmgr_decode limid/limid.h)
_filters_import_platform(limidmgr_encode limid/limid.h)

set(FILTERS_SYSTEM_PLATFORM_LINK_FLAGS
    "-lpolicer_common -llimidmgr_encode -llimidmgr_decode")

if(DEFINED PROJECT_BINARY_DIR AND PROJECT_NAME STREQUAL "FiltersCommon")
  install(FILES "${CMAKE_CURRENT_LIST_FILE}"
          DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/FiltersCommon"
          COMPONENT dev)
endif()
