# Included at the end of the project's project(): links the runtime into every library that comes behind.
include_guard(GLOBAL)
add_subdirectory(${MICROSOFT_RUNTIME_DIR} ${PROJECT_BINARY_DIR}/microsoft_runtime)
link_libraries(microsoft_runtime)

# vsmsgbus_add_tests_of(<build> <program> <module>)
#
# A program of tests cannot be linked for this ABI. So the test <program> is that of another build of the same project, in the
# folder <build>, with mingw-w64's g++, which is built anew if need be. It runs in a copy of its folder bin/ in which this
# build's <module> stands in the place of its own. Only the module's C functions may be called by the program.
function(vsmsgbus_add_tests_of build program module)
    if(NOT EXISTS ${build}/CMakeCache.txt)
        message(FATAL_ERROR "The tests are those of the preset mingw-cross: configure that first, in ${build}")
    endif()
    set(folder ${PROJECT_BINARY_DIR}/pair)
    # At every build: this one does not know when the other has to make its files anew.
    add_custom_target(pair ALL
        COMMAND ${CMAKE_COMMAND} --build ${build} --target ${program}
        COMMAND ${CMAKE_COMMAND} -E copy_directory ${build}/bin ${folder}/bin
        COMMAND ${CMAKE_COMMAND} -E copy_directory ${build}/agent ${folder}/agent
        COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:${module}> ${folder}/bin
        VERBATIM)
    add_dependencies(pair ${module})
    add_test(NAME ${program} COMMAND ${CMAKE_CROSSCOMPILING_EMULATOR} ${folder}/bin/${program}.exe)
    set_tests_properties(${program} PROPERTIES TIMEOUT 120)
endfunction()
