# The builds of the simulated agent: folders of libraries that all have the same file names.
#
# Each library <name>.dll has its sources in the object library <name>_objects, its sources that depend on the build in
# the list <name>_BUILD_SOURCES, and its exports in exports/<name>.def.
set(SIMULATED_AGENT_LIBRARIES ny_client ny_variant ny_msgbus ny_logger)
set(SIMULATED_AGENT_DIR ${CMAKE_CURRENT_SOURCE_DIR}/exports)

# Everything that was added by the functions below.
add_custom_target(simulated_agents ALL)

# Writes <library>.def of a build, without the names given behind `output`, and appends the names that it dropped to
# `droppedVariable`.
function(write_reduced_exports library output droppedVariable)
    set(full ${SIMULATED_AGENT_DIR}/${library}.def)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${full})
    file(READ ${full} exports)
    set(dropped ${${droppedVariable}})
    foreach(name IN LISTS ARGN)
        string(REGEX REPLACE "\n +${name}( =[^\n]*)?(\n|$)" "\n" reduced "${exports}")
        if(NOT reduced STREQUAL exports)
            list(APPEND dropped ${name})
            set(exports "${reduced}")
        endif()
    endforeach()
    file(CONFIGURE OUTPUT ${output} CONTENT "${exports}" @ONLY)
    set(${droppedVariable} ${dropped} PARENT_SCOPE)
endfunction()

# add_simulated_agent(<build> VERSION <n> [LACKING <name>...] [EMPTY])
#
# Adds the build <build>: the agent's four libraries and a copy of ny_simulator.dll in ${AGENT_OUTPUT_DIRECTORY}/<build>.
# The agent says that it is of version <n> and lacks the exports named by LACKING; with EMPTY it has none at all.
function(add_simulated_agent build)
    cmake_parse_arguments(PARSE_ARGV 1 AGENT "EMPTY" "VERSION" "LACKING")
    set(folder ${AGENT_OUTPUT_DIRECTORY}/${build})
    set(targets)
    set(dropped)
    foreach(library IN LISTS SIMULATED_AGENT_LIBRARIES)
        set(target ${library}_${build})
        if(AGENT_EMPTY)
            add_library(${target} SHARED ${SIMULATED_AGENT_DIR}/Empty.cpp)
            if(NOT MSVC AND WIN32)
                # Without a list of exports the linker would take every global symbol.
                target_link_options(${target} PRIVATE -Wl,--exclude-all-symbols)
            endif()
        else()
            set(exports ${CMAKE_CURRENT_BINARY_DIR}/${build}/${library}.def)
            write_reduced_exports(${library} ${exports} dropped ${AGENT_LACKING})
            add_library(${target} SHARED $<TARGET_OBJECTS:${library}_objects> ${${library}_BUILD_SOURCES} ${exports})
            target_compile_definitions(${target} PRIVATE AGENT_VERSION=${AGENT_VERSION})
            target_link_libraries(${target} PRIVATE agent_library_options)
        endif()
        target_link_libraries(${target} PRIVATE project_options)
        set_dll_properties(${target})
        set_target_properties(${target} PROPERTIES
            OUTPUT_NAME ${library}
            RUNTIME_OUTPUT_DIRECTORY ${folder}
            ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/${build})
        list(APPEND targets ${target})
    endforeach()
    if(AGENT_LACKING AND NOT "${dropped}" STREQUAL "")
        list(REMOVE_ITEM AGENT_LACKING ${dropped})
    endif()
    if(AGENT_LACKING AND NOT AGENT_EMPTY)
        message(FATAL_ERROR "The agent does not export: ${AGENT_LACKING}")
    endif()

    add_custom_command(OUTPUT ${folder}/ny_simulator.dll
        COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:ny_simulator> ${folder}/ny_simulator.dll
        DEPENDS ny_simulator
        VERBATIM)
    add_custom_target(simulated_agent_${build} DEPENDS ${targets} ${folder}/ny_simulator.dll)
    add_dependencies(simulated_agents simulated_agent_${build})
endfunction()

# Adds the build <build> of text files that have the names of the agent's libraries.
function(add_text_agent build)
    foreach(library IN LISTS SIMULATED_AGENT_LIBRARIES)
        file(CONFIGURE OUTPUT ${AGENT_OUTPUT_DIRECTORY}/${build}/${library}.dll
            CONTENT "This is a text, not a library.\n" @ONLY)
    endforeach()
endfunction()
