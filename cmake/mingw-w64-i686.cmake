# Cross-building the 32-bit Windows in-process server with Debian's MinGW-w64
# (g++-mingw-w64-i686-posix): i686-w64-mingw32, posix threads. The server is
# the same as the x64 one; only the pointer size and the calling convention
# of the platform differ (every COM method and export is __stdcall, exported
# without decoration through src/com/Quillbank.def).
set(CMAKE_SYSTEM_PROCESSOR i686)
set(QUILLBANK_MINGW_PREFIX i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64-common.cmake)

# The type library is written for 32-bit Windows, importing the 32-bit
# stdole2.tlb and msxml3.dll that lie beside the 32-bit Wine DLLs: the
# machine's own wine32:i386, or the private root of scripts/wine-root.sh.
set(QUILLBANK_WIDL_TARGET --win32)
set(QUILLBANK_WINE_DLLS_SUBDIR i386-linux-gnu/wine/i386-windows)

# Programs built here run under 32-bit Wine (scripts/test-windows.sh).
