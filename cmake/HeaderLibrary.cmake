# add_header_library(<target> <folder> <header>)
#
# A header-only library that is installed on the build machine, as target <target>: <folder>/<header> is how it is
# included. The machine's own include folder cannot be searched when cross-compiling, because the machine's other
# headers stand there too: the library's folder is copied out of it.
function(add_header_library target folder header)
    find_path(${target}_INCLUDE_DIR ${folder}/${header}
        PATHS /usr/include /usr/local/include
        NO_CMAKE_FIND_ROOT_PATH
        REQUIRED
        DOC "The folder that holds ${folder}/${header}")
    set(copy ${PROJECT_BINARY_DIR}/third_party/${target})
    file(COPY ${${target}_INCLUDE_DIR}/${folder} DESTINATION ${copy})
    add_library(${target} INTERFACE)
    target_include_directories(${target} SYSTEM INTERFACE ${copy})
endfunction()
