# What the native checking build has in the place of Windows: see docs/TESTING.md. Nothing of it is shipped.
set(SANITIZE "" CACHE STRING "The sanitizers of the native build, as -fsanitize names them")
if(NOT SANITIZE)
    message(FATAL_ERROR "A native build without sanitizers checks nothing: use the preset asan or tsan, in a new folder.")
endif()
# The sanitizer of function types compares addresses, which differ from one library to the next: every call of the
# agent's would be an error.
add_compile_options(
    -fsanitize=${SANITIZE} -fno-sanitize=function -fno-sanitize-recover=all -fno-omit-frame-pointer)
add_link_options(-fsanitize=${SANITIZE})

# One library's code looks for the others beside itself, as on Windows.
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_BUILD_RPATH $ORIGIN)

# On Windows every library carries a C++ runtime of its own: what a test does to the program's operator new is nothing to
# such a library. Only for one whose exports are restricted.
function(give_own_runtime target)
    target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/tests/win32/OwnMemory.cpp)
    target_link_options(${target} PRIVATE -static-libstdc++)
endfunction()

add_subdirectory(tests/win32)
target_link_libraries(project_options INTERFACE win32_layer)
# Exports are listed in .def files.
target_compile_options(project_options INTERFACE "-D__declspec(attribute)=")
# The product's locks tell when they are taken and left: see base/HeldLocks.h.
target_compile_definitions(project_options INTERFACE COUNT_HELD_LOCKS)

# Gives the library the file name and the folder that it has on Windows, and the exports of its .def file and no others.
function(set_native_dll_properties target)
    set_target_properties(${target} PROPERTIES
        SUFFIX .dll
        LINKER_LANGUAGE CXX
        LIBRARY_OUTPUT_DIRECTORY $<TARGET_PROPERTY:${target},RUNTIME_OUTPUT_DIRECTORY>)
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX "\\.def$")
    if(sources)
        restrict_exports(${target} ${sources})
    endif()
endfunction()

# restrict_exports(<target> <file>.def): a line is `name` or `name = what it stands for`. Names in quotes are those that
# another compiler gives, and mean nothing here.
function(restrict_exports target definitions)
    file(REAL_PATH ${definitions} definitions BASE_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR})
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${definitions})
    file(STRINGS ${definitions} lines REGEX "^ +[A-Za-z_0-9]+")
    set(exports)
    foreach(line IN LISTS lines)
        string(REGEX MATCH "^ +([A-Za-z_0-9]+)( = ([A-Za-z_0-9]+))?$" isExport "${line}")
        if(NOT isExport)
            message(FATAL_ERROR "${definitions}: not understood: ${line}")
        endif()
        string(APPEND exports "    ${CMAKE_MATCH_1};\n")
        if(CMAKE_MATCH_3)
            target_link_options(${target} PRIVATE -Wl,--defsym=${CMAKE_MATCH_1}=${CMAKE_MATCH_3})
        endif()
    endforeach()
    set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.exports)
    file(CONFIGURE OUTPUT ${script} CONTENT "{\nglobal:\n${exports}local:\n    *;\n};\n" @ONLY)
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${script})
    target_link_options(${target} PRIVATE
        -Wl,--version-script=${script} -Wl,--no-undefined-version -Wl,-Bsymbolic-functions)
endfunction()
