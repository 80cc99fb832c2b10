# rapidjson is headers only, and the same ones serve every platform. They are made visible through
# a folder that holds nothing else: for Windows the rest of the building machine's headers would be
# wrong ones.
find_path(VESK_RAPIDJSON_INCLUDE_DIR rapidjson/rapidjson.h
    PATHS /usr/include /usr/local/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)

set(private_include "${VESK_RAPIDJSON_INCLUDE_DIR}")
# On Windows nothing is built for another system, and making a link is a privilege.
if(NOT CMAKE_HOST_WIN32)
    set(private_include "${PROJECT_BINARY_DIR}/rapidjson-include")
    file(MAKE_DIRECTORY "${private_include}")
    file(CREATE_LINK "${VESK_RAPIDJSON_INCLUDE_DIR}/rapidjson" "${private_include}/rapidjson"
        SYMBOLIC)
endif()

add_library(vesk_rapidjson INTERFACE)
target_include_directories(vesk_rapidjson SYSTEM INTERFACE "${private_include}")
