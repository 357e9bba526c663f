# separate_symbols(<dll> <objects>)
#
# Makes a shipped DLL of mingw-w64's the same file wherever and whenever it is built, with nothing for debuggers in it: that
# stands in <dll>.dll.debug beside it, which gdb reads: the names of functions, and no lines, because g++ 12 fails at those
# of a DLL that is optimised as a whole. `objects` is the library of objects that it is made of.
function(separate_symbols target objects)
    if(NOT MINGW OR COVERAGE)
        return()
    endif()
    foreach(compiled ${target} ${objects})
        target_compile_options(${compiled} PRIVATE
            $<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=
            -ffile-prefix-map=${PROJECT_BINARY_DIR}=build>)
    endforeach()
    target_link_options(${target} PRIVATE LINKER:--no-insert-timestamp LINKER:--gc-sections)
    set(symbols $<TARGET_FILE:${target}>.debug)
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${CMAKE_OBJCOPY} --only-keep-debug $<TARGET_FILE:${target}> ${symbols}
        COMMAND ${CMAKE_STRIP} --strip-all $<TARGET_FILE:${target}>
        COMMAND ${CMAKE_OBJCOPY} --add-gnu-debuglink=${symbols} $<TARGET_FILE:${target}>
        BYPRODUCTS ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${target}.dll.debug
        VERBATIM)
endfunction()
