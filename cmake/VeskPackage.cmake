# The installed tree: headers, library, CMake package, and sample files beside the library.
include(CMakePackageConfigHelpers)

set(package_dir lib/cmake/VESKCore)
set(beside_library lib)
if(WIN32)
    set(beside_library bin)
endif()

install(TARGETS VESKCore EXPORT VESKCoreTargets
    RUNTIME DESTINATION bin
    LIBRARY DESTINATION lib
    ARCHIVE DESTINATION lib)
install(DIRECTORY include/vesk DESTINATION include)
if(WIN32)
    install(FILES "${VESK_DEF_FILE}" ${VESK_MSVC_IMPORT_LIBRARY} DESTINATION lib)
endif()
if(MINGW)
    # Told -lVESKCore and -static, the linker passes by libVESKCore.dll.a and would take VESKCore.lib.
    install(FILES $<TARGET_LINKER_FILE:VESKCore> DESTINATION lib RENAME libVESKCore.a)
endif()
# The sample settings name the dev backend, which speaks no TLS on Windows.
file(READ samples/config/VESKConfig.ini text)
if(WIN32)
    string(REPLACE "https://localhost:8443" "http://localhost:8080" text "${text}")
endif()
file(CONFIGURE OUTPUT VESKConfig.ini CONTENT "${text}" @ONLY)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS samples/config/VESKConfig.ini)
set(VESK_SAMPLE_FILES "${PROJECT_BINARY_DIR}/VESKConfig.ini" samples/config/VESKRetMsg.json)
install(FILES ${VESK_SAMPLE_FILES} DESTINATION ${beside_library})

install(EXPORT VESKCoreTargets NAMESPACE VESKCore:: DESTINATION ${package_dir})
configure_package_config_file(cmake/VESKCoreConfig.cmake.in VESKCoreConfig.cmake
    INSTALL_DESTINATION ${package_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(VESKCoreConfigVersion.cmake
    COMPATIBILITY SameMajorVersion ARCH_INDEPENDENT)
install(FILES
    "${PROJECT_BINARY_DIR}/VESKCoreConfig.cmake"
    "${PROJECT_BINARY_DIR}/VESKCoreConfigVersion.cmake"
    cmake/VESKCoreCopyLibrary.cmake
    cmake/VESKCoreCopyOnce.cmake
    DESTINATION ${package_dir})

configure_file(cmake/VESKCore.pc.in VESKCore.pc @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/VESKCore.pc" DESTINATION lib/pkgconfig)
