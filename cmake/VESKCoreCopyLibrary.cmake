# vesk_copy_library(<target> [CONFIG <file>] [MESSAGES <file>])
#
# Each build of the target puts the library and the files that it reads beside the program:
#   VESKCore.dll or libVESKCore.so
#   VESKRetMsg.json   MESSAGES: a translated one of yours
#   VESKConfig.ini    CONFIG: yours. Without it the sample, and only where there is none
set(_vesk_copy_once "${CMAKE_CURRENT_LIST_DIR}/VESKCoreCopyOnce.cmake")

function(vesk_copy_library target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "CONFIG;MESSAGES" "")
    if(NOT TARGET ${target} OR DEFINED arg_UNPARSED_ARGUMENTS OR DEFINED arg_KEYWORDS_MISSING_VALUES)
        message(FATAL_ERROR "vesk_copy_library(<target> [CONFIG <file>] [MESSAGES <file>])")
    endif()
    # A target's folder may be asked for without waiting for the target.
    cmake_policy(SET CMP0112 NEW)
    set(from "$<TARGET_FILE_DIR:VESKCore::VESKCore>")
    set(to "$<TARGET_FILE_DIR:${target}>")
    # A program asks for the library by its soname.
    set(name "$<TARGET_FILE_NAME:VESKCore::VESKCore>")
    if(NOT WIN32)
        set(name "$<TARGET_SONAME_FILE_NAME:VESKCore::VESKCore>")
    endif()

    set(config_command -E copy_if_different)
    if(NOT arg_CONFIG)
        set(arg_CONFIG "${from}/VESKConfig.ini")
        set(config_command -P "${_vesk_copy_once}")
    endif()
    if(NOT arg_MESSAGES)
        set(arg_MESSAGES "${from}/VESKRetMsg.json")
    endif()
    foreach(file IN ITEMS CONFIG MESSAGES)
        if(NOT arg_${file} MATCHES "^\\$<")
            get_filename_component(arg_${file} "${arg_${file}}" ABSOLUTE)
        endif()
    endforeach()

    # Before the target and whether or not it is linked anew: a changed CONFIG must arrive, too.
    add_custom_target(${target}_vesk_files
        COMMAND "${CMAKE_COMMAND}" -E make_directory "${to}"
        COMMAND "${CMAKE_COMMAND}" -E copy_if_different
            "$<TARGET_FILE:VESKCore::VESKCore>" "${to}/${name}"
        COMMAND "${CMAKE_COMMAND}" -E copy_if_different "${arg_MESSAGES}" "${to}/VESKRetMsg.json"
        COMMAND "${CMAKE_COMMAND}" ${config_command} "${arg_CONFIG}" "${to}/VESKConfig.ini"
        COMMENT "VESKCore's files for ${target}"
        VERBATIM)
    add_dependencies(${target} ${target}_vesk_files)

    # The library reads the files beside itself, so the program has to take the one beside it and
    # not the one in the package.
    set_property(TARGET ${target} APPEND PROPERTY BUILD_RPATH "$ORIGIN")
    set_property(TARGET ${target} APPEND PROPERTY INSTALL_RPATH "$ORIGIN")
endfunction()
