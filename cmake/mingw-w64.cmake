# Cross build for 64-bit Windows with Debian's mingw-w64. The posix flavour is required: the win32
# flavour has no std::mutex. On Windows itself the same file serves an MSYS2 or WinLibs toolchain.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

find_program(MIRELO_MINGW_CXX NAMES x86_64-w64-mingw32-g++-posix x86_64-w64-mingw32-g++ REQUIRED)
find_program(MIRELO_MINGW_RC NAMES x86_64-w64-mingw32-windres windres REQUIRED)
set(CMAKE_CXX_COMPILER ${MIRELO_MINGW_CXX})
set(CMAKE_RC_COMPILER ${MIRELO_MINGW_RC})

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)

if(NOT CMAKE_HOST_WIN32)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../scripts/wine-run")
endif()
