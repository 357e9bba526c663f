# The reference of the public headers as pages for a browser, in ${REFERENCE_OUTPUT_DIRECTORY}. A public name without a
# comment fails the build.
find_program(DOXYGEN_PROGRAM doxygen REQUIRED)
set(REFERENCE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/doc)
file(GLOB_RECURSE publicHeaders CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/include/*.h)
list(APPEND publicHeaders ${PROJECT_SOURCE_DIR}/loglib/LogLib.h)
configure_file(${PROJECT_SOURCE_DIR}/docs/Doxyfile.in Doxyfile @ONLY)
add_custom_command(OUTPUT ${REFERENCE_OUTPUT_DIRECTORY}/index.html
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${REFERENCE_OUTPUT_DIRECTORY}
    COMMAND ${DOXYGEN_PROGRAM} ${PROJECT_BINARY_DIR}/Doxyfile
    DEPENDS ${publicHeaders} ${PROJECT_BINARY_DIR}/Doxyfile
    VERBATIM)
add_custom_target(reference ALL DEPENDS ${REFERENCE_OUTPUT_DIRECTORY}/index.html)
add_dependencies(finished reference)
