# Run by CPack after it has staged the packages' files and before it builds
# them. The build tree installs the Python module where the interpreter of
# its own prefix looks (/usr/local/lib/python3.X/dist-packages); a Debian
# package puts it where Debian's python3 looks for packaged modules:
# /usr/lib/python3/dist-packages.
file(GLOB versioned_dirs LIST_DIRECTORIES true
     "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/python/usr/lib/python3.*/dist-packages")
foreach(versioned ${versioned_dirs})
  get_filename_component(version_dir "${versioned}" DIRECTORY)
  get_filename_component(lib_dir "${version_dir}" DIRECTORY)
  file(MAKE_DIRECTORY "${lib_dir}/python3")
  file(RENAME "${versioned}" "${lib_dir}/python3/dist-packages")
  file(GLOB left "${version_dir}/*")
  if(NOT left)
    file(REMOVE_RECURSE "${version_dir}")
  endif()
endforeach()
