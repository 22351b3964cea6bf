# 32-bit Windows. SSE2 arithmetic gives the same bits as the 64-bit builds, and Excel may call with a stack aligned
# to 4 bytes only.
set(triplet i686-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
