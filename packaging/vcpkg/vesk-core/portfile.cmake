# An overlay port: it builds the source tree that it lies in.
get_filename_component(SOURCE_PATH "${CURRENT_PORT_DIR}/../../.." ABSOLUTE)
vcpkg_check_linkage(ONLY_DYNAMIC_LIBRARY)

vcpkg_cmake_configure(
    SOURCE_PATH "${SOURCE_PATH}"
    OPTIONS
        -DVESK_BUILD_TESTS=OFF
        -DVESK_BUILD_BACKEND=OFF
        -DVESK_BUILD_DEVKIT=OFF
        -DVESK_WARNINGS_ARE_ERRORS=OFF)
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(PACKAGE_NAME VESKCore CONFIG_PATH lib/cmake/VESKCore)
vcpkg_fixup_pkgconfig()
vcpkg_copy_pdbs()

file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include")
file(INSTALL "${CURRENT_PORT_DIR}/usage" DESTINATION "${CURRENT_PACKAGES_DIR}/share/${PORT}")
# The project's own sources come with no licence file.
set(VCPKG_POLICY_SKIP_COPYRIGHT_CHECK enabled)
