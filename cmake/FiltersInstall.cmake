# Installation: libraries, public headers (hand-written and generated), the
# CMake package FiltersCommon and the pkg-config file filter_common.pc.

set(FILTERS_CMAKE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/FiltersCommon")

set(FILTERS_INSTALLED_LIBRARIES filter_common)
if(TARGET filter_rules)
  list(APPEND FILTERS_INSTALLED_LIBRARIES filter_rules)
endif()

foreach(library ${FILTERS_INSTALLED_LIBRARIES})
  filters_install_library(${library})
endforeach()

install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/FiltersCommon"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
  COMPONENT dev
  FILES_MATCHING PATTERN "*.h")
install(FILES ${FILTERS_PROTO_HEADERS}
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/FiltersCommon" COMPONENT dev)

install(EXPORT FiltersCommonTargets
  NAMESPACE FiltersCommon::
  DESTINATION "${FILTERS_CMAKE_DIR}"
  COMPONENT dev)

configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/FiltersCommonConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/FiltersCommonConfig.cmake"
  INSTALL_DESTINATION "${FILTERS_CMAKE_DIR}")
write_basic_package_version_file(
  "${PROJECT_BINARY_DIR}/FiltersCommonConfigVersion.cmake"
  VERSION "${PROJECT_VERSION}"
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/FiltersCommonConfig.cmake"
  "${PROJECT_BINARY_DIR}/FiltersCommonConfigVersion.cmake"
  DESTINATION "${FILTERS_CMAKE_DIR}"
  COMPONENT dev)

# pkg-config: the include directory holds the generated headers too, which
# include each other without a prefix.
if(FILTERS_PLATFORM_PROVIDER STREQUAL "bundled")
  set(FILTERS_PC_PLATFORM_LIBS "-lpolicer_common -llimidmgr_encode -llimidmgr_decode")
else()
  set(FILTERS_PC_PLATFORM_LIBS "${FILTERS_SYSTEM_PLATFORM_LINK_FLAGS}")
endif()
# The prefix is found relative to the .pc file, so an installed tree can move.
file(RELATIVE_PATH FILTERS_PC_TO_PREFIX
     "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
configure_file("${PROJECT_SOURCE_DIR}/cmake/filter_common.pc.in"
               "${PROJECT_BINARY_DIR}/filter_common.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/filter_common.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT dev)
if(TARGET filter_rules)
  configure_file("${PROJECT_SOURCE_DIR}/cmake/filter_rules.pc.in"
                 "${PROJECT_BINARY_DIR}/filter_rules.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/filter_rules.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT dev)
endif()
