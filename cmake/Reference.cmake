# The reference of the public headers, the kit's and the simulated agent's among them, as pages for a browser, in
# ${REFERENCE_OUTPUT_DIRECTORY}, with the guides for authors of modules and a front page by tasks. A public name without a comment
# fails the build, and so does a link to a name that is not there.
find_program(DOXYGEN_PROGRAM doxygen REQUIRED)
set(REFERENCE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/doc)
set(REFERENCE_GUIDES ${PROJECT_BINARY_DIR}/guides)
file(GLOB_RECURSE publicHeaders CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/*.h ${PROJECT_SOURCE_DIR}/include/*.hpp
    ${PROJECT_SOURCE_DIR}/kit/include/*.h ${PROJECT_SOURCE_DIR}/kit/include/*.hpp ${PROJECT_SOURCE_DIR}/simulator/include/*.h)
list(APPEND publicHeaders ${PROJECT_SOURCE_DIR}/loglib/LogLib.h)
find_package(Python3 REQUIRED COMPONENTS Interpreter)
configure_file(${PROJECT_SOURCE_DIR}/docs/Doxyfile.in Doxyfile @ONLY)

# The guides for authors of modules, pages of docs/.
set(AUTHORS_GUIDES GETTING_STARTED PLAY JUDGE CHECKS TIMELINE DOCTOR WHY_NOT_ASKED LOG_LINES STATUS_NUMBERS SECURITY)
set(guides)
foreach(name ${AUTHORS_GUIDES})
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
    DEPENDS ${publicHeaders} ${guides} ${PROJECT_BINARY_DIR}/Doxyfile ${PROJECT_SOURCE_DIR}/docs/FrontPage.dox
        ${CMAKE_CURRENT_LIST_DIR}/LinkNames.py
    VERBATIM)
add_custom_target(reference ALL DEPENDS ${REFERENCE_OUTPUT_DIRECTORY}/index.html)
add_dependencies(finished reference)
