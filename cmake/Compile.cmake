# How every target of this project is compiled and linked.

# Link to this one: warnings are errors; for Windows, the C++ runtime is linked in.
add_library(project_options INTERFACE)
target_compile_options(project_options INTERFACE
    -Wall -Wextra -Wpedantic -Werror
    -Wcast-qual -Wconversion -Wsign-conversion -Wdouble-promotion -Wformat=2 -Wimplicit-fallthrough
    -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual -Wshadow -Wundef -Wunused)
target_compile_definitions(project_options INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
if(WIN32)
    target_link_options(project_options INTERFACE -static)
else()
    include(cmake/Native.cmake)
endif()

# A library's file is named as on Windows: no "lib" before the name.
function(set_dll_properties target)
    set_target_properties(${target} PROPERTIES PREFIX "" IMPORT_PREFIX "lib")
    if(NOT WIN32)
        set_native_dll_properties(${target})
    endif()
endfunction()

# Gives a DLL the project's version, its own name and a description, as Windows shows them.
function(add_version_resource target description)
    if(WIN32)
        set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
        configure_file(${PROJECT_SOURCE_DIR}/cmake/Version.rc.in ${resource} @ONLY)
        target_sources(${target} PRIVATE ${resource})
    endif()
endfunction()

# Has the target's code, and no other, say which of its lines and branches run: to gcov, see scripts/coverage.sh, or to the
# fuzzer, see scripts/fuzz.sh. Not optimised for gcov, because a line that the optimiser moved or merged is no line to
# count.
option(COVERAGE "Count which lines of the product run" OFF)
option(FUZZ "Build the fuzzing targets as fuzzers" OFF)
function(count_coverage target)
    if(COVERAGE)
        target_compile_options(${target} PRIVATE -O0 --coverage -fprofile-update=atomic)
        target_link_options(${target} INTERFACE --coverage)
    endif()
    if(FUZZ)
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
endfunction()

# Has the C++ runtime in a Windows DLL go on where there is no memory: see the source.
function(give_runtime_reserve target)
    if(WIN32)
        target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/base/RuntimeReserve.cpp)
        target_link_options(${target} PRIVATE
            LINKER:--wrap=malloc LINKER:--wrap=calloc LINKER:--wrap=realloc LINKER:--wrap=free
            LINKER:--wrap=AllocateBlock)
    endif()
endfunction()
