# The second opinion: the same sources for the same target through clang, compiled but not linked.
# clang would take the headers of whichever MinGW runtime it finds first; the -posix ones are named,
# because the others lack std::thread.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(triple x86_64-w64-windows-gnu)
set(CMAKE_C_COMPILER clang)
set(CMAKE_C_COMPILER_TARGET ${triple})
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_CXX_COMPILER_TARGET ${triple})
set(CMAKE_ASM_COMPILER_TARGET ${triple})
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
file(GLOB libstdcxx /usr/lib/gcc/x86_64-w64-mingw32/*-posix/include/c++)
set(CMAKE_CXX_FLAGS_INIT
    "-nostdinc++ -isystem ${libstdcxx} -isystem ${libstdcxx}/x86_64-w64-mingw32 -isystem /usr/x86_64-w64-mingw32/include")
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64-root.cmake)
