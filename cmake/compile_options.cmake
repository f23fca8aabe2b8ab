# Options for every target of ours: warnings are errors, and the Windows program is one small file.
add_compile_options(
  -Wall -Wextra -Wpedantic -Werror -Wconversion -Wsign-conversion -Wshadow -Wcast-align
  -Wnon-virtual-dtor -Woverloaded-virtual -Wnull-dereference -Wformat=2
  -Wimplicit-fallthrough -Wundef)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options(-Wduplicated-cond -Wlogical-op)
endif()

if(MIRELO_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
                      -O1)
  add_link_options(-fsanitize=address,undefined)
  # The null checks of the sanitizer make the compiler see null paths that the program does not have.
  add_compile_options(-Wno-null-dereference)
endif()

# Speed where it counts is measured at -O2; -O3 only adds size.
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")

if(MIRELO_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(WIN32)
  add_compile_definitions(UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX STRICT
                          WINVER=0x0A00 _WIN32_WINNT=0x0A00)
  add_compile_options(-ffunction-sections -fdata-sections)
  # One commit gives the same bytes wherever and whenever it is built.
  add_link_options(-static -Wl,--gc-sections -Wl,--no-insert-timestamp)
  add_compile_options(-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.)
endif()
