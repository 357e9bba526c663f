# The package VsMsgbus, found relative to this file, wherever it was unpacked:
#
#   VsMsgbus::VsMsgbus    the bridge: what a module links
#   VsMsgbus::LogLib      the log of the bridge's host, loglib/LogLib.h; the bridge needs LogLib.dll beside it
#   VsMsgbus::Simulator   the control interface of the simulated agent, ny_simulator.h
#   VsMsgbus::Setup       makes a machine to try modules on, and installs the simulated agent on it, ny_setup.h
#   VsMsgbus::Testing     both, for a test that is written with vsmsgbus_testing.hpp
#   VsMsgbus_AGENT_DIR    the folder of the simulated agent's builds: full, older, lacking, empty, text
#   VsMsgbus_CHECKING_DIR the folder of the checking bridge
#
#   vsmsgbus_prepare_host(<target>)   see below
get_filename_component(_VsMsgbus_prefix "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
set(VsMsgbus_AGENT_DIR "${_VsMsgbus_prefix}/agent")
set(VsMsgbus_CHECKING_DIR "${_VsMsgbus_prefix}/checking")

# Adds VsMsgbus::<name> for the library <file>.dll, with the import library of the linker in use.
function(_VsMsgbus_add_library name file binaries imports includes)
    if(TARGET VsMsgbus::${name})
        return()
    endif()
    if(MSVC OR CMAKE_CXX_SIMULATE_ID STREQUAL "MSVC")
        set(importLibrary "${imports}/${file}.lib")
    else()
        set(importLibrary "${imports}/lib${file}.dll.a")
    endif()
    add_library(VsMsgbus::${name} SHARED IMPORTED)
    set_target_properties(VsMsgbus::${name} PROPERTIES
        IMPORTED_LOCATION "${binaries}/${file}.dll"
        IMPORTED_IMPLIB "${importLibrary}"
        INTERFACE_INCLUDE_DIRECTORIES "${includes}")
endfunction()

foreach(_VsMsgbus_name VsMsgbus LogLib)
    _VsMsgbus_add_library(${_VsMsgbus_name} ${_VsMsgbus_name}
        "${_VsMsgbus_prefix}/bin" "${_VsMsgbus_prefix}/lib" "${_VsMsgbus_prefix}/include")
endforeach()
if(CMAKE_GENERATOR MATCHES "Visual Studio")
    # Its debugger shows the texts of the bridge's buffers with this, once it is a source of the project.
    set_target_properties(VsMsgbus::VsMsgbus PROPERTIES
        INTERFACE_SOURCES "${_VsMsgbus_prefix}/include/VsMsgbus.natvis")
endif()
_VsMsgbus_add_library(Simulator ny_simulator
    "${VsMsgbus_AGENT_DIR}/lib" "${VsMsgbus_AGENT_DIR}/lib" "${VsMsgbus_AGENT_DIR}/include")

_VsMsgbus_add_library(Setup ny_setup
    "${VsMsgbus_AGENT_DIR}/lib" "${VsMsgbus_AGENT_DIR}/lib" "${VsMsgbus_AGENT_DIR}/include")

if(NOT TARGET VsMsgbus::Testing)
    add_library(VsMsgbus::Testing INTERFACE IMPORTED)
    set_target_properties(VsMsgbus::Testing PROPERTIES
        INTERFACE_COMPILE_FEATURES cxx_std_20
        INTERFACE_LINK_LIBRARIES "VsMsgbus::Setup;VsMsgbus::Simulator")
endif()

# vsmsgbus_prepare_host(<target> [CHECKING])
#
# Has everything stand where the program <target> looks for it when it tries modules: the bridge, its log, ny_setup.dll and
# ny_simulator.dll beside the program, and the agent's builds in agent/ beside the program's folder. There they are not found
# but through the registry, as on a machine with the agent. With
# CHECKING the bridge is the checking one, which names what a module does wrong: for tests, never for shipping.
function(vsmsgbus_prepare_host target)
    cmake_parse_arguments(PARSE_ARGV 1 HOST "CHECKING" "" "")
    set(bridge $<TARGET_FILE:VsMsgbus::VsMsgbus>)
    if(HOST_CHECKING)
        set(bridge ${VsMsgbus_CHECKING_DIR}/VsMsgbus.dll)
    endif()
    foreach(file ${bridge} $<TARGET_FILE:VsMsgbus::LogLib> $<TARGET_FILE:VsMsgbus::Setup>
            $<TARGET_FILE:VsMsgbus::Simulator>)
        add_custom_command(TARGET ${target} POST_BUILD
            COMMAND ${CMAKE_COMMAND} -E copy_if_different ${file} $<TARGET_FILE_DIR:${target}>
            VERBATIM)
    endforeach()
    foreach(build full older lacking empty text)
        add_custom_command(TARGET ${target} POST_BUILD
            COMMAND ${CMAKE_COMMAND} -E copy_directory
                ${VsMsgbus_AGENT_DIR}/${build} $<TARGET_FILE_DIR:${target}>/../agent/${build}
            VERBATIM)
    endforeach()
endfunction()

unset(_VsMsgbus_name)
unset(_VsMsgbus_prefix)
