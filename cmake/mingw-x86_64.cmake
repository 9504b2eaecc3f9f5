# 64-bit Windows with Debian's mingw-w64 (posix threads); tests run under 64-bit Wine.
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(LETTRIX_MINGW_TRIPLE x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-common.cmake)
