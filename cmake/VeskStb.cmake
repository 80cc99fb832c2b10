# stb writes and reads pictures. It is headers only, and the same ones serve every platform; see
# VeskRapidJson.cmake. They have a folder of their own.
find_path(VESK_STB_INCLUDE_DIR stb_image.h
    PATHS /usr/include /usr/local/include PATH_SUFFIXES stb NO_CMAKE_FIND_ROOT_PATH REQUIRED)

add_library(vesk_stb INTERFACE)
target_include_directories(vesk_stb SYSTEM INTERFACE "${VESK_STB_INCLUDE_DIR}")
