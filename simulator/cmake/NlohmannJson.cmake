# nlohmann-json, header only, as target `nlohmann_json`. The build machine's own include folder cannot be searched when
# cross-compiling, because the machine's other headers stand there too: the library's folder is copied out of it.
find_path(NLOHMANN_JSON_INCLUDE_DIR nlohmann/json.hpp
    PATHS /usr/include /usr/local/include
    NO_CMAKE_FIND_ROOT_PATH
    REQUIRED
    DOC "The folder that holds nlohmann/json.hpp")
file(COPY ${NLOHMANN_JSON_INCLUDE_DIR}/nlohmann DESTINATION ${CMAKE_CURRENT_BINARY_DIR}/third_party)

add_library(nlohmann_json INTERFACE)
target_include_directories(nlohmann_json SYSTEM INTERFACE ${CMAKE_CURRENT_BINARY_DIR}/third_party)
