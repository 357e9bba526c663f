# All that is finished: what `cmake --install` puts into build/dist: the finished files as a user of the bridge takes them away.
add_custom_target(finished)
add_dependencies(finished VsMsgbus LogLib simulated_agents ny_simulator SampleModule demo)

install(TARGETS VsMsgbus LogLib RUNTIME DESTINATION bin ARCHIVE DESTINATION lib)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION include)
install(FILES ${PROJECT_SOURCE_DIR}/loglib/LogLib.h DESTINATION include/loglib)

# The simulated agent's builds, and what a program needs to command it.
install(DIRECTORY ${AGENT_OUTPUT_DIRECTORY}/ DESTINATION agent)
install(FILES ${PROJECT_SOURCE_DIR}/simulator/include/ny_simulator.h ${PROJECT_SOURCE_DIR}/agent/ny_agent.h
    DESTINATION agent/include)
install(TARGETS ny_simulator RUNTIME DESTINATION agent/lib ARCHIVE DESTINATION agent/lib)

# The demo runs where it stands: its DLLs beside it, the simulated agent's builds in ../agent.
install(TARGETS demo SampleModule RUNTIME DESTINATION demo ARCHIVE DESTINATION demo EXCLUDE_FROM_ALL)
install(FILES $<TARGET_FILE:VsMsgbus> $<TARGET_FILE:LogLib> $<TARGET_FILE:ny_simulator> DESTINATION demo)
