# How every target of this project is compiled and linked.

# Link to this one: warnings are errors; for Windows, the C++ runtime is linked in. Microsoft's own compiler could not be
# tried yet: what it warns of is not known, and is no error.
add_library(project_options INTERFACE)
set(warnings
    -Wcast-qual -Wconversion -Wsign-conversion -Wdouble-promotion -Wformat=2 -Wimplicit-fallthrough
    -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual -Wshadow -Wundef -Wunused)
if(NOT MSVC)
    target_compile_options(project_options INTERFACE -Wall -Wextra -Wpedantic -Werror ${warnings})
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(project_options INTERFACE /W4 /WX -Wpedantic ${warnings})
else()
    target_compile_options(project_options INTERFACE /W4 /permissive- /utf-8 /bigobj /Zc:__cplusplus)
endif()
if(MSVC)
    # A function with C linkage may throw: a host's log has one.
    target_compile_options(project_options INTERFACE /EHc-)
endif()
target_compile_definitions(project_options INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
if(MINGW)
    target_link_options(project_options INTERFACE -static)
elseif(MICROSOFT_RUNTIME_OF_OURS)
    add_subdirectory(tests/microsoft_runtime)
    target_link_libraries(project_options INTERFACE microsoft_runtime)
elseif(NOT WIN32)
    include(cmake/Native.cmake)
endif()

# The same files wherever and whenever they are built: no path of the machine, no time, no random numbers of the compiler's.
if(MINGW)
    add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=>
        $<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${PROJECT_BINARY_DIR}=build>)
    add_link_options(LINKER:--no-insert-timestamp)
    # The compiler looks for memory that it needs no more when it has this much, in KB. By itself it does so from the first
    # 128 MB on, which takes a tenth of its time and spares a sixth of its memory.
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:--param=ggc-min-heapsize=524288>)
endif()

# Has the compiler check what the target's code says of its locks: see base/ThreadSafety.h. Tests, which look into objects
# that no other thread knows, are not checked.
function(check_locks target)
    if(NOT WIN32)
        target_compile_options(${target} PRIVATE -Wthread-safety)
    endif()
endfunction()

# Has the targets built quickly rather than run fast. mingw-w64's linker takes a time that grows with the square of an
# object's sections, of which there is one for each inline function that was not inlined. Where coverage is counted nothing
# is inlined: what a test inlines of the product is not counted.
function(build_quickly)
    set(option -O0)
    if(MSVC)
        set(option /Od)
    elseif(MINGW AND NOT COVERAGE)
        set(option -Og)
    endif()
    foreach(target IN LISTS ARGN)
        target_compile_options(${target} PRIVATE ${option})
    endforeach()
endfunction()

# A library's file is named as on Windows: no "lib" before the name. Import libraries are named as their linker looks for
# them.
function(set_dll_properties target)
    set_target_properties(${target} PROPERTIES PREFIX "")
    if(NOT MSVC)
        set_target_properties(${target} PROPERTIES IMPORT_PREFIX "lib")
    endif()
    if(NOT WIN32)
        set_native_dll_properties(${target})
    endif()
endfunction()

# Exports from a DLL what its .def file lists. That speaks of mingw-w64's compiler: a member function stands there under the
# name which that compiler gives it, and is exported again as "the name that Microsoft's gives it". Microsoft's is told it
# the other way round.
function(add_exports target definitions)
    if(MSVC)
        file(REAL_PATH ${definitions} source BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${source})
        file(READ ${source} text)
        string(REGEX REPLACE "(\n +)(_Z[A-Za-z0-9_]+)(\n +)(\"[^\"]+\") = _Z[A-Za-z0-9_]+" "\\1\\4\\3\\2 = \\4"
            text "${text}")
        set(definitions ${CMAKE_CURRENT_BINARY_DIR}/${target}.def)
        file(GENERATE OUTPUT ${definitions} CONTENT "${text}")
    endif()
    target_sources(${target} PRIVATE ${definitions})
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

# Has the C++ runtime in a Windows DLL go on where there is no memory, and end the process without a word where it must: see
# the sources. Microsoft's needs no memory to throw.
function(give_runtime_reserve target)
    if(MINGW)
        target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/base/RuntimeReserve.cpp
            ${PROJECT_SOURCE_DIR}/base/Terminate.cpp)
        target_link_options(${target} PRIVATE
            LINKER:--wrap=malloc LINKER:--wrap=calloc LINKER:--wrap=realloc LINKER:--wrap=free
            LINKER:--wrap=AllocateBlock)
    endif()
endfunction()
