# Cross-building the Windows in-process server with Debian's MinGW-w64
# (g++-mingw-w64-x86-64-posix): x86_64-w64-mingw32, posix threads.
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(QUILLBANK_MINGW_PREFIX x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64-common.cmake)

# The type library is written for 64-bit Windows, importing the stdole2.tlb
# and msxml3.dll of the 64-bit Wine DLLs.
set(QUILLBANK_WIDL_TARGET --win64)
set(QUILLBANK_WINE_DLLS_SUBDIR x86_64-linux-gnu/wine/x86_64-windows)

# Programs built here run under Wine.
set(CMAKE_CROSSCOMPILING_EMULATOR /usr/lib/wine/wine64)
