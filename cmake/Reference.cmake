# The reference of the public headers as pages for a browser, in ${REFERENCE_OUTPUT_DIRECTORY}, with the guides for authors of
# modules. A public name without a comment fails the build.
find_program(DOXYGEN_PROGRAM doxygen REQUIRED)
set(REFERENCE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/doc)
set(REFERENCE_GUIDES ${PROJECT_BINARY_DIR}/guides)
file(GLOB_RECURSE publicHeaders CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/*.h ${PROJECT_SOURCE_DIR}/include/*.hpp
    ${PROJECT_SOURCE_DIR}/kit/include/*.h ${PROJECT_SOURCE_DIR}/kit/include/*.hpp)
list(APPEND publicHeaders ${PROJECT_SOURCE_DIR}/loglib/LogLib.h)
configure_file(${PROJECT_SOURCE_DIR}/docs/Doxyfile.in Doxyfile @ONLY)

set(guides)
foreach(name GETTING_STARTED WHY_NOT_ASKED LOG_LINES STATUS_NUMBERS)
    set(page ${PROJECT_SOURCE_DIR}/docs/${name}.md)
    set(guide ${REFERENCE_GUIDES}/${name}.md)
    add_custom_command(OUTPUT ${guide}
        COMMAND ${CMAKE_COMMAND} -DPAGE=${page} -DTO=${guide} -P ${CMAKE_CURRENT_LIST_DIR}/ReferencePage.cmake
        DEPENDS ${page} ${CMAKE_CURRENT_LIST_DIR}/ReferencePage.cmake
        VERBATIM)
    list(APPEND guides ${guide})
endforeach()

add_custom_command(OUTPUT ${REFERENCE_OUTPUT_DIRECTORY}/index.html
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${REFERENCE_OUTPUT_DIRECTORY}
    COMMAND ${DOXYGEN_PROGRAM} ${PROJECT_BINARY_DIR}/Doxyfile
    DEPENDS ${publicHeaders} ${guides} ${PROJECT_BINARY_DIR}/Doxyfile
    VERBATIM)
add_custom_target(reference ALL DEPENDS ${REFERENCE_OUTPUT_DIRECTORY}/index.html)
add_dependencies(finished reference)
