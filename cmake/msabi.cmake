# 64-bit Windows, Microsoft's C++ ABI. On Windows Microsoft's own compiler, which could not be tried yet. Elsewhere a cross
# toolchain, for tests alone: clang with the command line of Microsoft's compiler, libc++'s headers above mingw-w64's, and
# for what a DLL needs besides them tests/microsoft_runtime.
if(CMAKE_HOST_WIN32)
    set(CMAKE_C_COMPILER cl)
    set(CMAKE_CXX_COMPILER cl)
    # Nothing but the system's own libraries is needed, as with mingw-w64.
    set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")
    return()
endif()
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)

set(clangDir /usr/lib/llvm-14)
set(CMAKE_C_COMPILER ${clangDir}/bin/clang-cl)
set(CMAKE_CXX_COMPILER ${clangDir}/bin/clang-cl)
set(CMAKE_C_COMPILER_TARGET x86_64-pc-windows-msvc)
set(CMAKE_CXX_COMPILER_TARGET x86_64-pc-windows-msvc)
set(CMAKE_LINKER lld-link-14)
set(CMAKE_AR llvm-lib-14)
set(CMAKE_MT llvm-mt-14)
set(CMAKE_RC_COMPILER llvm-rc-14)

# Whether the build brings a runtime of its own, in the place of Microsoft's, and the folder of its sources.
set(MICROSOFT_RUNTIME_OF_OURS ON)
if(NOT MICROSOFT_RUNTIME_DIR)
    set(MICROSOFT_RUNTIME_DIR ${CMAKE_CURRENT_LIST_DIR}/../tests/microsoft_runtime)
endif()
set(MINGW_DIR /usr/x86_64-w64-mingw32)
set(includes)
foreach(folder
        ${MICROSOFT_RUNTIME_DIR}/std
        ${clangDir}/include/c++/v1
        ${MICROSOFT_RUNTIME_DIR}/crt
        /usr/lib/clang/14/include
        ${MINGW_DIR}/include)
    string(APPEND includes " -imsvc \"${folder}\"")
endforeach()
# Which compiler of Microsoft's to be; mingw-w64's headers look for g++ as well. The runtime checks no stack (-GS-).
set(flags "-fmsc-version=1933 -fgnuc-version=4.2.1 -nobuiltininc -X -Zl -GS- ${includes}")
string(APPEND flags " -D_UCRT -D_strtof_l=_strtod_l -D_strtold_l=_strtod_l")
set(CMAKE_C_FLAGS_INIT "${flags}")
set(CMAKE_CXX_FLAGS_INIT
    "${flags} -D_LIBCPP_NO_VCRUNTIME -D_LIBCPP_NO_AUTO_LINK -D_LIBCPP_DISABLE_VISIBILITY_ANNOTATIONS")
set(CMAKE_RC_FLAGS_INIT "-I${MINGW_DIR}/include")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "/nodefaultlib /manifest:no")
set(CMAKE_C_STANDARD_LIBRARIES "" CACHE STRING "")
set(CMAKE_CXX_STANDARD_LIBRARIES "" CACHE STRING "")
set(CMAKE_MSVC_RUNTIME_LIBRARY "")
# There is nothing yet that a program for a trial could be linked with.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

set(CMAKE_FIND_ROOT_PATH ${MINGW_DIR})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/wine-run.sh)
