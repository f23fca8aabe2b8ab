# A second opinion on the Windows program: clang, with the headers, libraries and linker of mingw-w64's GCC.
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
execute_process(COMMAND ${MIRELO_MINGW_CXX} -print-libgcc-file-name
                OUTPUT_VARIABLE mingw_gcc OUTPUT_STRIP_TRAILING_WHITESPACE)
cmake_path(GET mingw_gcc PARENT_PATH mingw_gcc)

find_program(MIRELO_CLANG_CXX NAMES clang++ REQUIRED)
set(CMAKE_CXX_COMPILER ${MIRELO_CLANG_CXX})
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-mingw32)

# Left to itself clang finds neither Debian's C++ library for Windows nor the linker's start files, and
# takes Linux headers instead. Thread-local variables are shared with the C++ library, so made as GCC does.
set(CMAKE_CXX_FLAGS_INIT "-nostdlibinc -Wno-unused-command-line-argument -femulated-tls \
-isystem ${mingw_gcc}/include/c++ -isystem ${mingw_gcc}/include/c++/x86_64-w64-mingw32 \
-idirafter /usr/x86_64-w64-mingw32/include")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -B${mingw_gcc} -L${mingw_gcc}")
set(CMAKE_CXX_STANDARD_LIBRARIES "-lstdc++ -lgcc_eh -lpthread")
