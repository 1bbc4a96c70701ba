# What both MinGW-w64 toolchain files share: Debian's posix-thread compilers
# of the target QUILLBANK_MINGW_PREFIX names, its widl, and a search for
# libraries and headers in that target's own root only.
set(CMAKE_SYSTEM_NAME Windows)

set(CMAKE_C_COMPILER ${QUILLBANK_MINGW_PREFIX}-gcc-posix)
set(CMAKE_CXX_COMPILER ${QUILLBANK_MINGW_PREFIX}-g++-posix)
set(CMAKE_RC_COMPILER ${QUILLBANK_MINGW_PREFIX}-windres)
set(QUILLBANK_WIDL ${QUILLBANK_MINGW_PREFIX}-widl)

set(CMAKE_FIND_ROOT_PATH /usr/${QUILLBANK_MINGW_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
