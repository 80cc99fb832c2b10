# For what stands around the product, included by the folders concerned.

# Compiled in half the time: most of it goes into the headers of GoogleTest and httplib.
if(NOT DEFINED CMAKE_UNITY_BUILD)
    set(CMAKE_UNITY_BUILD ON)
    set(CMAKE_UNITY_BUILD_BATCH_SIZE 8)
endif()

# lld, where it is installed, links in a second what takes GNU ld a minute, most of it for Windows. The
# product keeps GNU ld.
find_program(VESK_LLD ld.lld)
mark_as_advanced(VESK_LLD)
if(VESK_LLD AND NOT MSVC AND CMAKE_HOST_UNIX)
    if(MINGW)
        # This GCC knows one linker only, so something else stands in for it.
        add_link_options(-fno-use-linker-plugin "SHELL:-wrapper ${CMAKE_CURRENT_LIST_DIR}/link-with,${VESK_LLD}")
    else()
        add_link_options(-fuse-ld=lld)
    endif()
endif()
