# The cross compiler cannot see the host's header folder, so header-only packages are copied into the
# build folder and included from there, natively as well, so that both builds use them the same way.
find_path(NLOHMANN_JSON_ROOT nlohmann/json.hpp PATHS /usr/include NO_DEFAULT_PATH
    NO_CMAKE_FIND_ROOT_PATH REQUIRED)
file(COPY ${NLOHMANN_JSON_ROOT}/nlohmann DESTINATION ${CMAKE_BINARY_DIR}/third_party)

add_library(third_party_json INTERFACE)
target_include_directories(third_party_json SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/third_party)

find_path(CLI11_ROOT CLI/CLI.hpp PATHS /usr/include NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
file(COPY ${CLI11_ROOT}/CLI DESTINATION ${CMAKE_BINARY_DIR}/third_party)

add_library(third_party_cli11 INTERFACE)
target_include_directories(third_party_cli11 SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/third_party)
