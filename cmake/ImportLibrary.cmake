# The import libraries of Microsoft's linker, made from the lists of exports alone.
find_program(DLLTOOL_FOR_MICROSOFT NAMES llvm-dlltool-14 llvm-dlltool REQUIRED
    DOC "Makes the import libraries of Microsoft's linker")

# add_microsoft_import_library(<target> <file>.def)
#
# Makes <target>.lib beside the target's other import library, as part of `finished` and of `all`, and sets
# <target>_MICROSOFT_LIBRARY to its path.
function(add_microsoft_import_library target definitions)
    set(library ${CMAKE_ARCHIVE_OUTPUT_DIRECTORY}/${target}.lib)
    add_custom_command(OUTPUT ${library}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_ARCHIVE_OUTPUT_DIRECTORY}
        COMMAND ${DLLTOOL_FOR_MICROSOFT} -m i386:x86-64 -D $<TARGET_FILE_NAME:${target}> -d ${definitions} -l ${library}
        DEPENDS ${definitions}
        VERBATIM)
    add_custom_target(${target}_microsoft_library ALL DEPENDS ${library})
    add_dependencies(finished ${target}_microsoft_library)
    set(${target}_MICROSOFT_LIBRARY ${library} PARENT_SCOPE)
endfunction()
