# Before a package is made of what was installed: Debian's linker finds the libraries by itself.
file(GLOB_RECURSE files "${CPACK_TEMPORARY_DIRECTORY}/*/vexosh"
     "${CPACK_TEMPORARY_DIRECTORY}/*.so.0")
foreach(file ${files})
  if(NOT IS_DIRECTORY "${file}" AND NOT IS_SYMLINK "${file}")
    file(RPATH_REMOVE FILE "${file}")
  endif()
endforeach()

# Debian's manual pages are compressed.
file(GLOB_RECURSE pages "${CPACK_TEMPORARY_DIRECTORY}/*.1")
foreach(page ${pages})
  execute_process(COMMAND gzip -9n "${page}" COMMAND_ERROR_IS_FATAL ANY)
endforeach()
