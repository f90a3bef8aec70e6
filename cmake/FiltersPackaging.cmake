# Debian packages built from this build tree by CPack's DEB generator
# (scripts/package.sh): one runtime package per shared library, named after
# its SONAME, a -dev package, filters-tool, and the Python module when it is
# built. dpkg-shlibdeps computes every package's dependencies from the ELF
# files themselves, on the system's libraries and on each other.

set(FILTERS_DEB_MAINTAINER "Filters maintainers <filters-maintainers@lists.example.org>"
    CACHE STRING "Maintainer field of the Debian packages")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME filters-common)
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_CONTACT "${FILTERS_DEB_MAINTAINER}")
# Each package has its own synopsis (filters_deb_component); an empty
# project-wide one keeps CPack from putting the project's above it.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
# Packages carry stripped binaries; the build tree keeps its debug info.
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${FILTERS_DEB_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# A shlibs file in every package with a shared library.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

set(FILTERS_DEB_VERSION "${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}")
set(FILTERS_DEB_DIR "${PROJECT_BINARY_DIR}/packaging")

# Every package carries the copyright file and the Debian changelog in its
# documentation directory.
file(MAKE_DIRECTORY "${FILTERS_DEB_DIR}")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
             "${PROJECT_SOURCE_DIR}/packaging/changelog")
execute_process(
  COMMAND gzip -9nc "${PROJECT_SOURCE_DIR}/packaging/changelog"
  OUTPUT_FILE "${FILTERS_DEB_DIR}/changelog.Debian.gz"
  RESULT_VARIABLE gzip_result)
if(NOT gzip_result EQUAL 0)
  message(FATAL_ERROR "gzip of packaging/changelog failed")
endif()

# filters_deb_component(<component> <package> <section> <summary>
#                       <description> [DEPENDS <extra>...]
#                       [OVERRIDES <file>]): declares the Debian package made
# of one install component. <extra> are dependencies no ELF file shows (the
# -dev package's headers, the Python interpreter); <file> in packaging/ holds
# the package's lintian overrides.
set(FILTERS_DEB_COMPONENTS "")
macro(filters_deb_component component package section summary description)
  cmake_parse_arguments(_deb "" "OVERRIDES" "DEPENDS" ${ARGN})
  string(TOUPPER "${component}" _up)
  set(CPACK_DEBIAN_${_up}_PACKAGE_NAME "${package}")
  set(CPACK_DEBIAN_${_up}_PACKAGE_SECTION "${section}")
  set(CPACK_DEBIAN_${_up}_DESCRIPTION "${summary}\n${description}")
  string(REPLACE ";" ", " _deps "${_deb_DEPENDS}")
  set(CPACK_DEBIAN_${_up}_PACKAGE_DEPENDS "${_deps}")
  list(APPEND FILTERS_DEB_COMPONENTS ${component})
  install(FILES "${PROJECT_SOURCE_DIR}/packaging/copyright"
                "${FILTERS_DEB_DIR}/changelog.Debian.gz"
          DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/doc/${package}"
          COMPONENT ${component})
  if(_deb_OVERRIDES)
    install(FILES "${PROJECT_SOURCE_DIR}/packaging/${_deb_OVERRIDES}"
            DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides"
            RENAME "${package}" COMPONENT ${component})
  endif()
endmacro()

# The runtime packages: lib<name><SOVERSION>, as Debian names a library
# package after its SONAME, so that two majors can be installed side by side.
# Each activates the ldconfig trigger.
set(FILTERS_DEB_SUMMARY_filter_common "switch packet filter model - runtime library")
set(FILTERS_DEB_SUMMARY_filter_rules "switch packet filter rule text - runtime library")
set(FILTERS_DEB_SUMMARY_policer_common "switch platform policer model - runtime library")
set(FILTERS_DEB_SUMMARY_limidmgr_decode "logical interface identifier decoder - runtime library")
set(FILTERS_DEB_SUMMARY_limidmgr_encode "logical interface identifier encoder - runtime library")
set(FILTERS_DEB_SHLIBS "")
set(FILTERS_DEB_RUNTIME_PACKAGES "")
get_property(FILTERS_RUNTIME_LIBRARIES GLOBAL PROPERTY FILTERS_RUNTIME_LIBRARIES)
foreach(library ${FILTERS_RUNTIME_LIBRARIES})
  get_target_property(soversion ${library} SOVERSION)
  string(REPLACE "_" "-" stem "${library}")
  set(package "lib${stem}${soversion}")
  filters_deb_component(${library} ${package} libs
    "${FILTERS_DEB_SUMMARY_${library}}"
    "Runtime library lib${library}.so.${soversion}, part of the switch packet\nfilter model (FiltersCommon)."
    OVERRIDES runtime.lintian-overrides)
  string(TOUPPER "${library}" up)
  # The trigger replaces the ldconfig calls CPack would write into postinst
  # and postrm; these two stand in for them and do nothing.
  set(CPACK_DEBIAN_${up}_PACKAGE_CONTROL_EXTRA
      "${PROJECT_SOURCE_DIR}/packaging/triggers"
      "${PROJECT_SOURCE_DIR}/packaging/postinst"
      "${PROJECT_SOURCE_DIR}/packaging/postrm")
  string(APPEND FILTERS_DEB_SHLIBS
         "lib${library} ${soversion} ${package} (>= ${FILTERS_DEB_VERSION})\n")
  list(APPEND FILTERS_DEB_RUNTIME_PACKAGES "${package} (= ${FILTERS_DEB_VERSION})")
endforeach()

# dpkg-shlibdeps resolves a library of this project through the shlibs file
# of a package tree; the packages being built have none it can see, so it
# is shown one holding every library and the shlibs lines above.
set(FILTERS_DEB_SHLIBS_TREE "${FILTERS_DEB_DIR}/shlibs-tree")
file(WRITE "${FILTERS_DEB_SHLIBS_TREE}/DEBIAN/shlibs" "${FILTERS_DEB_SHLIBS}")
set(links "")
foreach(library ${FILTERS_RUNTIME_LIBRARIES})
  list(APPEND links COMMAND "${CMAKE_COMMAND}" -E create_symlink
       "$<TARGET_FILE:${library}>"
       "${FILTERS_DEB_SHLIBS_TREE}/lib/$<TARGET_SONAME_FILE_NAME:${library}>")
endforeach()
add_custom_target(filters_deb_shlibs_tree ALL
  COMMAND "${CMAKE_COMMAND}" -E make_directory "${FILTERS_DEB_SHLIBS_TREE}/lib"
  ${links}
  DEPENDS ${FILTERS_RUNTIME_LIBRARIES}
  VERBATIM)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${FILTERS_DEB_SHLIBS_TREE}/lib")

filters_deb_component(dev libfilter-common-dev libdevel
  "switch packet filter model - development files"
  "Headers (C++ and C, and the generated protocol-buffers headers), the\nunversioned library links, the CMake package FiltersCommon and the\npkg-config files filter_common and filter_rules."
  DEPENDS ${FILTERS_DEB_RUNTIME_PACKAGES} libprotobuf-dev)

set(FILTERS_TOOL_SUMMARY "inspect, convert and compile switch packet filter groups")
if(TARGET filters-tool)
  # Its manual page is its --help, made at build time when help2man is there
  # (scripts/package.sh installs it).
  find_program(FILTERS_HELP2MAN help2man)
  if(FILTERS_HELP2MAN)
    set(man "${FILTERS_DEB_DIR}/filters-tool.1")
    add_custom_command(OUTPUT "${man}.gz"
      COMMAND "${FILTERS_HELP2MAN}" --no-info --section=1
              --name=${FILTERS_TOOL_SUMMARY}
              --version-string=${PROJECT_VERSION}
              --output=${man} $<TARGET_FILE:filters-tool>
      COMMAND gzip -9nf "${man}"
      DEPENDS filters-tool
      VERBATIM)
    add_custom_target(filters_tool_manpage ALL DEPENDS "${man}.gz")
    install(FILES "${man}.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1"
            COMPONENT tool)
  endif()
  filters_deb_component(tool filters-tool utils
    "${FILTERS_TOOL_SUMMARY}"
    "filters-tool prints, checks, converts (wire bytes, hex, JSON, rule text)\nand compares the filter groups that switch processes exchange.")
endif()

if(TARGET filters_common_py)
  filters_deb_component(python python3-filters-common python
    "switch packet filter model - Python 3 module"
    "Python bindings of the switch packet filter model."
    DEPENDS "python3 (>= 3.11)" "python3 (<< 3.12)" python3-protobuf)
endif()

set(CPACK_COMPONENTS_ALL ${FILTERS_DEB_COMPONENTS})
include(CPack)
