# Common part of the two Windows toolchains; `triplet` is set by the file that includes this one.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_CXX_COMPILER ${triplet}-g++-win32)
set(CMAKE_C_COMPILER ${triplet}-gcc-win32)
set(CMAKE_RC_COMPILER ${triplet}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)

# One file that loads on a clean machine (static runtime), and the same bytes whenever and wherever it is built. Windows may
# move it in memory, and runs nothing of its data. Control-flow guard is beyond GCC and binutils.
set(link_flags "-static -Wl,--no-insert-timestamp -Wl,--disable-auto-image-base -Wl,--dynamicbase -Wl,--nxcompat")
if(CMAKE_SYSTEM_PROCESSOR STREQUAL x86_64)
  string(APPEND link_flags " -Wl,--high-entropy-va")
endif()
set(CMAKE_EXE_LINKER_FLAGS_INIT "${link_flags}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${link_flags}")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "${link_flags}")

if(DEFINED ENV{KESTRAN_WINE})
  set(CMAKE_CROSSCOMPILING_EMULATOR $ENV{KESTRAN_WINE})
endif()
