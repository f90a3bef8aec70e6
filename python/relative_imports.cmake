# protoc writes "import filter_matches_pb2 as ..." between the generated
# files, which only works from the top level; inside filters_common.wire the
# imports must be relative.
file(GLOB generated "${WIRE_DIR}/*_pb2.py")
foreach(file ${generated})
  file(READ "${file}" text)
  string(REGEX REPLACE "\nimport (filter_[a-z]+_pb2)" "\nfrom . import \\1"
         text "${text}")
  file(WRITE "${file}" "${text}")
endforeach()
