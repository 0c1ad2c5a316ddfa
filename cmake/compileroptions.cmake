# Every flag of the project, in one interface target that each of our targets links.
add_library(project_options INTERFACE)
target_compile_features(project_options INTERFACE cxx_std_20)
target_compile_definitions(project_options INTERFACE UNICODE _UNICODE)

if(MSVC)
    # File names in messages then start at the source tree and name no machine; the compiler knows the tree as
    # the system writes it. Warnings are none of the build's errors: the project's own runs do not see them.
    cmake_path(NATIVE_PATH PROJECT_SOURCE_DIR native_source_dir)
    target_compile_options(project_options INTERFACE /W4 /permissive- /utf-8 /Zc:__cplusplus
                                                     "/d1trimfile:${native_source_dir}\\src\\")
    # The C runtime that MinGW-w64 brings does not warn of these.
    target_compile_definitions(project_options INTERFACE _CRT_SECURE_NO_WARNINGS)
else()
    target_compile_options(
        project_options
        INTERFACE -Wall
                  -Wextra
                  -Wpedantic
                  -Wshadow
                  -Wconversion
                  -Woverloaded-virtual
                  -Wsuggest-override
                  -Werror
                  # Libraries of Debian 13 deprecate functions whose successors those of Debian 12 do not have.
                  -Wno-deprecated-declarations
                  # Messages name sources relative to the source tree; the later map is tried first.
                  -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=
                  -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/src/=)
    if(SANITIZERS)
        # Everything that is linked, the tests' library too.
        add_compile_options(-fsanitize=${SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
        add_link_options(-fsanitize=${SANITIZERS})
    endif()
    if(MINGW)
        # In the module and the programs alike; the linker's defaults are the rest of what hardens an image.
        target_compile_options(project_options INTERFACE -fstack-protector-strong)
        # No runtime DLLs, and the same bytes from the same sources: without the time, and without names of files
        # and folders, which the symbols of a Release image hold.
        target_link_options(project_options INTERFACE -static -fstack-protector-strong -Wl,--no-insert-timestamp)
    endif()
    if(MINGW AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_link_options(project_options INTERFACE $<$<CONFIG:Release>:-s>)
        # GCC 12 warns of overlapping, endless and short copies where strings are joined, in optimised builds only.
        target_compile_options(
            project_options
            INTERFACE "$<$<CONFIG:Release>:-Wno-restrict;-Wno-stringop-overflow;-Wno-stringop-overread;-Wno-array-bounds>")
    endif()
endif()

# Set where the second compiler builds. It links the module and checks all other sources.
if(MINGW AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    set(SECOND_COMPILER ON)
    # Symbols for Windows, with source names that start at the tree. The DLL holds a hash of them: a compiler that
    # writes its command line among them, as clang 14 does, makes another DLL in each folder.
    set(WINDOWS_SYMBOLS -g -gcodeview -fdebug-prefix-map=${PROJECT_SOURCE_DIR}/= -fdebug-compilation-dir=.)
    include(CheckCXXCompilerFlag)
    check_cxx_compiler_flag(-gno-codeview-command-line SYMBOLS_WITHOUT_COMMAND_LINE)
    if(SYMBOLS_WITHOUT_COMMAND_LINE)
        list(APPEND WINDOWS_SYMBOLS -gno-codeview-command-line)
    endif()
endif()

# Has the folders that are added afterwards compiled for errors and warnings only.
macro(check_syntax_only)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${PROJECT_SOURCE_DIR}/cmake/syntaxonly)
endmacro()

option(MEASURE_COVERAGE "Count which lines of the module are entered" OFF)

# The time that MinGW's linker takes grows with the square of the functions in a source, inline ones included: 20 s
# for a suite with all those of the standard library, 6 s for one in which they are inlined, as -Og does. LLVM's takes
# 0.1 s. What ships is linked by GCC's own.
if(MINGW AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT MEASURE_COVERAGE)
    target_compile_options(project_options INTERFACE $<$<CONFIG:Debug>:-Og>)
    find_program(LLD ld.lld)
    if(LLD)
        string(APPEND CMAKE_EXE_LINKER_FLAGS_DEBUG " -wrapper ${PROJECT_SOURCE_DIR}/cmake/lld")
    endif()
endif()

# Has a target of the module count its lines, and whatever links it keep the counts.
function(measure_coverage target)
    if(MEASURE_COVERAGE)
        target_compile_options(${target} PRIVATE --coverage)
        target_link_options(${target} PUBLIC --coverage)
    endif()
endfunction()

# Gives a target the headers that most sources include, precompiled once: those of cmake/precompiled/NAME.h. The
# second compiler reads every header where it is included, so that each must go on to compile alone; counted lines
# need flags that precompiled headers do not share.
function(precompile_headers target name)
    if(MEASURE_COVERAGE OR SECOND_COMPILER)
        return()
    endif()
    if(NOT TARGET precompiled_${name})
        set(source ${PROJECT_BINARY_DIR}/precompiled/${name}.cpp)
        file(CONFIGURE OUTPUT ${source} CONTENT "")
        add_library(precompiled_${name} OBJECT ${source})
        target_link_libraries(precompiled_${name} PRIVATE platform ${ARGN})
        target_precompile_headers(precompiled_${name} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/precompiled/${name}.h)
    endif()
    target_precompile_headers(${target} REUSE_FROM precompiled_${name})
endfunction()

# A program or DLL of the project, PROGRAM or SHARED.
function(add_binary name kind)
    set(sources ${ARGN})
    if(SECOND_COMPILER)
        list(FILTER sources EXCLUDE REGEX "\\.(def|rc)$")
        add_library(${name} STATIC ${sources})
    elseif(kind STREQUAL "PROGRAM")
        add_executable(${name} ${sources})
    else()
        add_library(${name} SHARED ${sources})
    endif()
endfunction()
