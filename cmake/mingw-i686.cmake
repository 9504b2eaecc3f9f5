# 32-bit Windows with Debian's mingw-w64 (posix threads); tests run under 32-bit Wine.
set(CMAKE_SYSTEM_PROCESSOR x86)
set(LETTRIX_MINGW_TRIPLE i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-common.cmake)
