# What is finished: what `cmake --install` lays out, as a user of the bridge takes it away; scripts/make-zip.py makes one
# file of it. A
# package that can be moved: nothing in it says where it was built or installed.
add_custom_target(finished)
add_dependencies(finished VsMsgbus VsMsgbusChecking LogLib simulated_agents ny_simulator ny_setup SampleModule demo vsmsgbus_tool)

include(${CMAKE_CURRENT_LIST_DIR}/ImportLibrary.cmake)
add_microsoft_import_library(VsMsgbus ${PROJECT_SOURCE_DIR}/library/VsMsgbus.def)
add_microsoft_import_library(LogLib ${PROJECT_SOURCE_DIR}/loglib/LogLib.def)
add_microsoft_import_library(ny_simulator ${PROJECT_SOURCE_DIR}/simulator/core/ny_simulator.def)
add_microsoft_import_library(ny_setup ${PROJECT_SOURCE_DIR}/kit/setup/ny_setup.def)

# --- The bridge and the log of its host ------------------------------------------------------------------------------

install(TARGETS vsmsgbus_tool RUNTIME DESTINATION bin)
install(TARGETS VsMsgbus LogLib RUNTIME DESTINATION bin ARCHIVE DESTINATION lib)
install(FILES ${VsMsgbus_MICROSOFT_LIBRARY} ${LogLib_MICROSOFT_LIBRARY} DESTINATION lib)
install(FILES $<TARGET_FILE:VsMsgbus>.debug $<TARGET_FILE:LogLib>.debug DESTINATION symbols)
install(FILES $<TARGET_FILE:VsMsgbusChecking> DESTINATION checking)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION include)
install(FILES ${PROJECT_SOURCE_DIR}/loglib/LogLib.h DESTINATION include/loglib)

# --- The simulated agent: its builds, what a program needs to command it, and the machine that it is installed on ----

install(DIRECTORY ${AGENT_OUTPUT_DIRECTORY}/ DESTINATION agent)
foreach(folder agent simulator/include kit/include)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/${folder}/ DESTINATION agent/include
        FILES_MATCHING PATTERN *.h PATTERN *.hpp)
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/tool/play/story.schema.json DESTINATION agent)
install(TARGETS ny_simulator ny_setup RUNTIME DESTINATION agent/lib ARCHIVE DESTINATION agent/lib)
install(FILES ${ny_simulator_MICROSOFT_LIBRARY} ${ny_setup_MICROSOFT_LIBRARY} DESTINATION agent/lib)

# --- The demo runs where it stands: its DLLs beside it, the simulated agent's builds in ../agent ---------------------

install(TARGETS demo SampleModule RUNTIME DESTINATION demo ARCHIVE DESTINATION demo EXCLUDE_FROM_ALL)
install(FILES
    $<TARGET_FILE:VsMsgbus> $<TARGET_FILE:LogLib> $<TARGET_FILE:ny_simulator> ${PROJECT_SOURCE_DIR}/demo/policies.json
    ${PROJECT_SOURCE_DIR}/demo/story.json ${PROJECT_SOURCE_DIR}/demo/tasks.json
    DESTINATION demo)

# --- The reference of the public headers -----------------------------------------------------------------------------

include(${CMAKE_CURRENT_LIST_DIR}/Reference.cmake)
install(DIRECTORY ${REFERENCE_OUTPUT_DIRECTORY}/ DESTINATION doc)

# --- What is read first, and the guides --------------------------------------------------------------------------------

install(FILES ${PROJECT_SOURCE_DIR}/docs/package/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md DESTINATION .)
foreach(guide ${AUTHORS_GUIDES})
    install(FILES ${PROJECT_SOURCE_DIR}/docs/${guide}.md DESTINATION guides)
endforeach()

# --- The CMake package, and a project that uses it -------------------------------------------------------------------

include(CMakePackageConfigHelpers)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VsMsgbusConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/VsMsgbusConfig.cmake ${PROJECT_BINARY_DIR}/VsMsgbusConfigVersion.cmake
    DESTINATION lib/cmake/VsMsgbus)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/tests/package/consumer/ DESTINATION example)

# --- What makes a project of one's own, and runs Windows programs under Wine -----------------------------------------

install(PROGRAMS ${PROJECT_SOURCE_DIR}/scripts/new-module.sh ${PROJECT_SOURCE_DIR}/scripts/wine-run.sh DESTINATION scripts)
install(FILES ${PROJECT_SOURCE_DIR}/scripts/wine-env.sh DESTINATION scripts)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/scripts/new-module DESTINATION scripts)

# --- What builds a module for Microsoft's C++ ABI on Linux, to try it ------------------------------------------------

install(DIRECTORY ${PROJECT_SOURCE_DIR}/kit/msabi/ DESTINATION msabi)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/msabi.cmake DESTINATION msabi)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/tests/microsoft_runtime/ DESTINATION msabi/runtime)

# --- What the programs and DLLs were linked with, and the digests of all files: last, when all the others are there ------

set(linked VsMsgbus=bin/VsMsgbus.dll LogLib=bin/LogLib.dll VsMsgbusChecking=checking/VsMsgbus.dll
    vsmsgbus_tool=bin/vsmsgbus.exe ny_simulator=agent/lib/ny_simulator.dll ny_setup=agent/lib/ny_setup.dll demo=demo/demo.exe
    SampleModule=demo/SampleModule.dll)
foreach(build full older lacking empty)
    foreach(library ny_client ny_variant ny_msgbus ny_logger)
        list(APPEND linked ${library}_${build}=agent/${build}/${library}.dll)
    endforeach()
endforeach()
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/maps)
set(linkedWithMaps)
foreach(entry IN LISTS linked)
    string(REGEX REPLACE "=.*" "" target ${entry})
    set(map ${PROJECT_BINARY_DIR}/maps/${target}.map)
    target_link_options(${target} PRIVATE LINKER:-Map,${map})
    list(APPEND linkedWithMaps ${entry}=${map})
endforeach()
list(JOIN linkedWithMaps " " linkedWithMaps)
find_package(Python3 REQUIRED COMPONENTS Interpreter)
install(CODE "
    execute_process(COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/scripts/sbom.py --version ${PROJECT_VERSION}
        --out \${CMAKE_INSTALL_PREFIX}/sbom.cdx.json ${linkedWithMaps} COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE \${CMAKE_INSTALL_PREFIX}/SHA256SUMS)
    file(GLOB_RECURSE files RELATIVE \${CMAKE_INSTALL_PREFIX} \${CMAKE_INSTALL_PREFIX}/*)
    list(SORT files)
    set(sums)
    foreach(name IN LISTS files)
        file(SHA256 \${CMAKE_INSTALL_PREFIX}/\${name} sum)
        string(APPEND sums \"\${sum}  \${name}\\n\")
    endforeach()
    file(WRITE \${CMAKE_INSTALL_PREFIX}/SHA256SUMS \"\${sums}\")")
