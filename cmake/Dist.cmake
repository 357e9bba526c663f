# build/dist: the finished files as a user of the bridge takes them away. The presets share it; the last one that was
# built stands there.
set(DIST_DIRECTORY ${PROJECT_SOURCE_DIR}/build/dist CACHE PATH "Where the finished files are put")

install(TARGETS VsMsgbus RUNTIME DESTINATION bin ARCHIVE DESTINATION lib)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION include)
install(DIRECTORY ${AGENT_OUTPUT_DIRECTORY}/ DESTINATION agent)
