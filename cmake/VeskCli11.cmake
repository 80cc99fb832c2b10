# CLI11 is headers only, and the same ones serve every platform; see VeskRapidJson.cmake.
find_path(VESK_CLI11_INCLUDE_DIR CLI/CLI.hpp
    PATHS /usr/include /usr/local/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)

set(private_include "${VESK_CLI11_INCLUDE_DIR}")
if(NOT CMAKE_HOST_WIN32)
    set(private_include "${PROJECT_BINARY_DIR}/cli11-include")
    file(MAKE_DIRECTORY "${private_include}")
    file(CREATE_LINK "${VESK_CLI11_INCLUDE_DIR}/CLI" "${private_include}/CLI" SYMBOLIC)
endif()

add_library(vesk_cli11 INTERFACE)
target_include_directories(vesk_cli11 SYSTEM INTERFACE "${private_include}")
# It is most of a program that links it, all of which runs once: to optimise that takes 40 % of its time.
target_compile_options(vesk_cli11 INTERFACE $<IF:$<CXX_COMPILER_ID:MSVC>,/Od,-O0>)
