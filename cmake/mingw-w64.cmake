# Cross-builds 64-bit Windows programs on Debian with MinGW-w64. The -posix compilers bring
# std::thread and std::mutex; everything is linked statically, so that no runtime DLL is needed.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64-root.cmake)
