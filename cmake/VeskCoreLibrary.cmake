# What the product's objects are compiled with, and the shared library made of them.
find_package(CURL REQUIRED)
include(${PROJECT_SOURCE_DIR}/cmake/VeskRapidJson.cmake)

set(vesk_public_include "${PROJECT_SOURCE_DIR}/include")

# Whatever links the objects (the library, the unit tests) sees the sources as the library does.
target_include_directories(vesk_objects PUBLIC "${PROJECT_SOURCE_DIR}/src" "${vesk_public_include}")
target_compile_definitions(vesk_objects PUBLIC VESK_BUILDING_LIBRARY)
target_link_libraries(vesk_objects PUBLIC
    vesk_options CURL::libcurl vesk_rapidjson ${CMAKE_DL_LIBS})
set_target_properties(vesk_objects PROPERTIES POSITION_INDEPENDENT_CODE ON)
if(NOT VESK_SANITIZE AND NOT WIN32)
    # File by file, so that each is seen to include what it needs.
    set_target_properties(vesk_objects PROPERTIES UNITY_BUILD OFF)
endif()
if(NOT MSVC)
    # No format string may come from data.
    target_compile_options(vesk_objects PRIVATE -Wformat=2)
endif()
# A stray write ends the process instead of being used.
if(MSVC)
    target_compile_options(vesk_objects PRIVATE /guard:cf)
elseif(NOT MINGW AND NOT VESK_SANITIZE)
    # MinGW-w64's stack protector asks Windows for a random number while the loader holds its lock.
    target_compile_options(vesk_objects PRIVATE -fstack-protector-strong
        -U_FORTIFY_SOURCE $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
endif()
if(MINGW AND NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
    # A login waits for the network and for Windows: a small library is worth more than a faster one.
    target_compile_options(vesk_objects PRIVATE -Os)
endif()
if(WIN32)
    target_link_libraries(vesk_objects PUBLIC ole32 oleaut32 uuid)
else()
    # libcurl's own: the library keeps it from ending too early, and its parsed authorities.
    find_package(OpenSSL REQUIRED)
    target_link_libraries(vesk_objects PUBLIC OpenSSL::SSL OpenSSL::Crypto)
endif()

# The plain C interface's names, from the list that scripts/check-binary compares with the library.
set(vesk_export_list "${PROJECT_SOURCE_DIR}/cmake/exports.txt")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${vesk_export_list}")
file(STRINGS "${vesk_export_list}" vesk_c_names REGEX "^vesk_[a-z_]+$")

add_library(VESKCore SHARED)
add_library(VESKCore::VESKCore ALIAS VESKCore)
target_link_libraries(VESKCore PRIVATE vesk_objects)
target_compile_features(VESKCore INTERFACE cxx_std_11)
target_include_directories(VESKCore INTERFACE
    $<BUILD_INTERFACE:${vesk_public_include}> $<INSTALL_INTERFACE:include>)
set_target_properties(VESKCore PROPERTIES OUTPUT_NAME VESKCore LINKER_LANGUAGE CXX)

if(WIN32)
    enable_language(RC)
    configure_file("${PROJECT_SOURCE_DIR}/cmake/VESKCore.rc.in" VESKCore.rc @ONLY)
    add_library(vesk_version_resource OBJECT "${CMAKE_CURRENT_BINARY_DIR}/VESKCore.rc")
    target_link_libraries(VESKCore PRIVATE vesk_version_resource)
    set_target_properties(VESKCore PROPERTIES PREFIX "")
    # What other compilers make their import library from; the C++ names are of no use to them.
    list(JOIN vesk_c_names "\n    " names)
    file(CONFIGURE OUTPUT VESKCore.def
        CONTENT "LIBRARY VESKCore.dll\nEXPORTS\n    ${names}\n" @ONLY)
    set(VESK_DEF_FILE "${CMAKE_CURRENT_BINARY_DIR}/VESKCore.def" PARENT_SCOPE)
    if(MSVC)
        target_link_options(VESKCore PRIVATE /guard:cf /DYNAMICBASE /HIGHENTROPYVA /NXCOMPAT)
    elseif(MINGW)
        # Nothing may be needed beside the DLL but Windows itself; and of the static libraries
        # inside, nothing may be exported.
        target_link_options(VESKCore PRIVATE -static -Wl,--exclude-all-symbols
            -Wl,--dynamicbase -Wl,--high-entropy-va -Wl,--nxcompat
            # The names of all functions, for Windows' own debuggers.
            "-Wl,--pdb=$<TARGET_FILE_DIR:VESKCore>/VESKCore.pdb")
    endif()
else()
    set(map "${PROJECT_SOURCE_DIR}/cmake/VESKCore.map")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${map}")
    file(READ "${map}" text)
    list(JOIN vesk_c_names ";\n        " c_names)
    string(REPLACE "global:" "global:\n        ${c_names};" text "${text}")
    set(vesk_exports "${CMAKE_CURRENT_BINARY_DIR}/VESKCore.map")
    file(CONFIGURE OUTPUT VESKCore.map CONTENT "${text}" @ONLY)
    # nodelete: detached threads of the library may still run when a game closes it.
    target_link_options(VESKCore PRIVATE
        "-Wl,--version-script=${vesk_exports}" -Wl,-z,nodelete -Wl,-z,relro -Wl,-z,now
        -Wl,-z,noexecstack)
    set_target_properties(VESKCore PROPERTIES LINK_DEPENDS "${vesk_exports}")
    if(NOT VESK_SANITIZE)
        # A sanitizer's runtime is in the program, not in the library.
        target_link_options(VESKCore PRIVATE -Wl,--no-undefined)
    endif()
endif()
