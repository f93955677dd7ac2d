# Windows programs from Linux: MinGW-w64 with POSIX threads, everything linked statically.
set(CMAKE_SYSTEM_NAME Windows)
set(T x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${T}-gcc-posix)
set(CMAKE_CXX_COMPILER ${T}-g++-posix)
set(CMAKE_RC_COMPILER ${T}-windres)
execute_process(COMMAND ${T}-gcc-posix -print-file-name=libkernel32.a OUTPUT_VARIABLE K
                OUTPUT_STRIP_TRAILING_WHITESPACE)
get_filename_component(CMAKE_FIND_ROOT_PATH ${K}/../.. ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
