# On Linux: builds a module for Microsoft's C++ ABI with clang, to try it under Wine. Not to be shipped: the C++ library is
# libc++, and what it has besides its headers is the little that stands in runtime/. There are no streams (<iostream>), no
# std::exception_ptr, no futures, no stop callbacks; a program cannot be linked, only a DLL.
#
#   cmake -DCMAKE_TOOLCHAIN_FILE=<this file> ...
set(MICROSOFT_RUNTIME_DIR ${CMAKE_CURRENT_LIST_DIR}/runtime)
include(${CMAKE_CURRENT_LIST_DIR}/msabi.cmake)
# That of the bridge stands elsewhere.
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)
# Once the compilers are there: the runtime, and what the project's tests need. Not in CMake's own trials of the compilers.
get_property(isTrial GLOBAL PROPERTY IN_TRY_COMPILE)
if(NOT isTrial)
    set(CMAKE_PROJECT_INCLUDE ${CMAKE_CURRENT_LIST_DIR}/project.cmake)
endif()
