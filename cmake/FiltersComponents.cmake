# Install components, one per Debian package (see FiltersPackaging.cmake):
#   <library target>  the versioned shared object and its SONAME link
#   dev               headers (written and generated), unversioned .so links,
#                     the CMake package and the .pc files
#   tool              filters-tool and its manual page
#   python            the Python module, when it is built
# `cmake --install` without --component still installs everything.

# filters_install_library(<target>): installs a shared library into its own
# runtime component, its unversioned link into dev, and adds it to the
# exported CMake package. The list of installed libraries is kept in the
# global property FILTERS_RUNTIME_LIBRARIES, in installation order.
function(filters_install_library target)
  install(TARGETS ${target}
    EXPORT FiltersCommonTargets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
      COMPONENT ${target}
      NAMELINK_COMPONENT dev
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT dev
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT ${target})
  set_property(GLOBAL APPEND PROPERTY FILTERS_RUNTIME_LIBRARIES ${target})
endfunction()
