# For what stands around the product: lld links in a second what takes GNU ld a minute, most of it for
# Windows. Included by the folders concerned, where lld is installed; the product keeps GNU ld.
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
