# WebAssembly with Debian's clang, lld, wasi-libc and libc++: packages clang-14 lld-14 wasi-libc libc++-14-dev-wasm32
# libclang-rt-14-dev-wasm32. Pairs of doubles as the SSE2 code has them, never relaxed SIMD, whose bits depend on the machine.
set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_SYSTEM_PROCESSOR wasm32)
set(KESTRAN_WASM ON)
set(triplet wasm32-wasi)
set(CMAKE_CXX_COMPILER clang++-14)
set(CMAKE_CXX_COMPILER_TARGET ${triplet})
set(CMAKE_AR llvm-ar-14)
set(CMAKE_RANLIB llvm-ranlib-14)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)

# Nothing is thrown: memory that runs out ends the module.
set(CMAKE_CXX_FLAGS_INIT "-msimd128 -fignore-exceptions -D_LIBCPP_NO_EXCEPTIONS -fno-rtti -ffunction-sections -fdata-sections")
set(llvm /usr/lib/llvm-14)
set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES ${llvm}/include/${triplet}/c++/v1 ${CMAKE_CURRENT_LIST_DIR}/../numerics/wasm
  /usr/include/${triplet})
# A stack of 1 MB, as threads of Windows have; below the data, so that an overflow traps.
set(CMAKE_EXE_LINKER_FLAGS_INIT
  "-nostdlib -mexec-model=reactor -Wl,--gc-sections -Wl,-s -Wl,--stack-first -Wl,-z,stack-size=1048576")
file(GLOB builtins ${llvm}/lib/clang/*/lib/wasi/libclang_rt.builtins-wasm32.a)
set(CMAKE_CXX_STANDARD_LIBRARIES
  "/usr/lib/${triplet}/crt1-reactor.o -L${llvm}/lib/${triplet} -lc++ -lc++abi -L/usr/lib/${triplet} -lc ${builtins}")
