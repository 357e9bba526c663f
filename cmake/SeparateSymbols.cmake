# separate_symbols(<dll>)
#
# Makes a shipped DLL of mingw-w64's with nothing for debuggers in it: that stands in <dll>.dll.debug beside it, which gdb
# reads: the names of functions, and no lines, because g++ 12 fails at those of a DLL that is optimised as a whole.
function(separate_symbols target)
    if(NOT MINGW OR COVERAGE)
        return()
    endif()
    target_link_options(${target} PRIVATE LINKER:--gc-sections)
    set(symbols $<TARGET_FILE:${target}>.debug)
    # These tools write the time into a file's head, too.
    set(at_no_time ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=0)
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${at_no_time} ${CMAKE_OBJCOPY} --only-keep-debug $<TARGET_FILE:${target}> ${symbols}
        COMMAND ${at_no_time} ${CMAKE_STRIP} --strip-all $<TARGET_FILE:${target}>
        COMMAND ${at_no_time} ${CMAKE_OBJCOPY} --add-gnu-debuglink=${symbols} $<TARGET_FILE:${target}>
        BYPRODUCTS ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${target}.dll.debug
        VERBATIM)
endfunction()
