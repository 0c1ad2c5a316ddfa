# The second compiler: the same sources for the same target through clang and lld, which write symbols as Windows
# debuggers read them. PROCESSOR is x86_64, or aarch64 for compiling only: there are no libraries for that.
# clang would take whichever MinGW runtime it finds first; the -posix one is named, because the others lack
# std::thread.
set(CMAKE_SYSTEM_NAME Windows)
if(NOT PROCESSOR)
    set(PROCESSOR x86_64)
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES PROCESSOR)
set(CMAKE_SYSTEM_PROCESSOR ${PROCESSOR})
set(triple ${PROCESSOR}-w64-windows-gnu)
set(CMAKE_C_COMPILER clang)
set(CMAKE_C_COMPILER_TARGET ${triple})
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_CXX_COMPILER_TARGET ${triple})
set(CMAKE_ASM_COMPILER_TARGET ${triple})
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_DLLTOOL x86_64-w64-mingw32-dlltool)
set(CMAKE_OBJDUMP x86_64-w64-mingw32-objdump)
file(GLOB runtime /usr/lib/gcc/x86_64-w64-mingw32/*-posix)
set(CMAKE_CXX_FLAGS_INIT
    "-nostdinc++ -isystem ${runtime}/include/c++ -isystem ${runtime}/include/c++/x86_64-w64-mingw32 -isystem /usr/x86_64-w64-mingw32/include")
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
# GCC's runtime libraries need each other in a circle.
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-fuse-ld=lld -nostdlib++ -L${runtime} -L/usr/x86_64-w64-mingw32/lib")
set(CMAKE_CXX_STANDARD_LIBRARIES
    "-Wl,--start-group -lstdc++ -lssp -lgcc -lgcc_eh -lpthread -lmingw32 -lmingwex -lmsvcrt -ladvapi32 -luser32 -lkernel32 -Wl,--end-group"
    CACHE STRING "")
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64-root.cmake)
