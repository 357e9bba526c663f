# The package VsMsgbus, found relative to this file, wherever it was unpacked:
#
#   VsMsgbus::VsMsgbus    the bridge: what a module links
#   VsMsgbus::LogLib      the log of the bridge's host, loglib/LogLib.h; the bridge needs LogLib.dll beside it
#   VsMsgbus::Simulator   the control interface of the simulated agent, ny_simulator.h
#   VsMsgbus::AgentSetup  installs the simulated agent: AgentInstaller.h, RegistryRedirect.h; for mingw-w64's g++ alone
#   VsMsgbus_AGENT_DIR    the folder of the simulated agent's builds: full, older, lacking, empty, text
get_filename_component(_VsMsgbus_prefix "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
set(VsMsgbus_AGENT_DIR "${_VsMsgbus_prefix}/agent")

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
_VsMsgbus_add_library(Simulator ny_simulator
    "${VsMsgbus_AGENT_DIR}/lib" "${VsMsgbus_AGENT_DIR}/lib" "${VsMsgbus_AGENT_DIR}/include")

if(MINGW AND NOT TARGET VsMsgbus::AgentSetup)
    add_library(VsMsgbus::AgentSetup STATIC IMPORTED)
    set_target_properties(VsMsgbus::AgentSetup PROPERTIES
        IMPORTED_LOCATION "${VsMsgbus_AGENT_DIR}/lib/libagent_setup.a"
        INTERFACE_COMPILE_FEATURES cxx_std_20
        INTERFACE_INCLUDE_DIRECTORIES "${VsMsgbus_AGENT_DIR}/include"
        INTERFACE_LINK_LIBRARIES advapi32)
endif()
unset(_VsMsgbus_name)
unset(_VsMsgbus_prefix)
