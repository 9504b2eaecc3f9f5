# What both Windows toolchains share: Debian's mingw-w64 compilers with posix threads for the triple the
# including file names in LETTRIX_MINGW_TRIPLE, and Wine to run the programs (tools/wine-run.sh picks the
# 32-bit or 64-bit loader from each program's header).
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${LETTRIX_MINGW_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${LETTRIX_MINGW_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${LETTRIX_MINGW_TRIPLE}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${LETTRIX_MINGW_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../tools/wine-run.sh")
