# delayed(LIBRARY FUNCTION...): what the program needs of a system library only now and then. The
# library is loaded with the first call of one of them and so costs the start nothing.
function(delayed library)
  set(definition ${CMAKE_BINARY_DIR}/delayed/${library}.def)
  set(archive ${CMAKE_BINARY_DIR}/delayed/lib${library}_delayed.a)
  list(JOIN ARGN "\n" functions)
  file(CONFIGURE OUTPUT ${definition} CONTENT "LIBRARY ${library}.dll\nEXPORTS\n${functions}\n")
  execute_process(COMMAND ${CMAKE_DLLTOOL} --output-delaylib ${archive} --input-def ${definition}
                  COMMAND_ERROR_IS_FATAL ANY)
  also(platform/win32 ${archive})
endfunction()
