# A stand-in for a channel's component, under the name by which the SDK loads it, on Linux too:
# FOLDER/NAME.dll. EXPORTS are its entry points, whatever else its SOURCES have. Nothing else is seen from
# outside: the unique symbols of GCC's templates would keep it in the process for ever.
function(vesk_add_component target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "NAME;FOLDER" "EXPORTS;SOURCES;LIBRARIES")
    add_library(${target} SHARED ${arg_SOURCES})
    target_link_libraries(${target} PRIVATE vesk_options ${arg_LIBRARIES})
    set(exports "${CMAKE_CURRENT_BINARY_DIR}/${target}")
    if(WIN32)
        list(JOIN arg_EXPORTS " PRIVATE\n" names)
        file(CONFIGURE OUTPUT "${exports}.def" CONTENT "EXPORTS\n${names} PRIVATE\n")
        target_sources(${target} PRIVATE "${exports}.def")
    else()
        list(JOIN arg_EXPORTS "; " names)
        file(CONFIGURE OUTPUT "${exports}.map" CONTENT "{ global: ${names}; local: *; };\n")
        target_link_options(${target} PRIVATE "LINKER:--version-script=${exports}.map")
        set_property(TARGET ${target} PROPERTY LINK_DEPENDS "${exports}.map")
        # That list alone decides; a source's options come behind those of vesk_options.
        set_property(SOURCE ${arg_SOURCES} PROPERTY COMPILE_OPTIONS -fvisibility=default)
    endif()
    if(MINGW)
        target_link_options(${target} PRIVATE -static)
    endif()
    set_target_properties(${target} PROPERTIES
        PREFIX "" OUTPUT_NAME ${arg_NAME} SUFFIX .dll
        RUNTIME_OUTPUT_DIRECTORY ${arg_FOLDER}
        LIBRARY_OUTPUT_DIRECTORY ${arg_FOLDER}
        # Nothing links a stand-in: keep its import library out of lib/, and one from the other.
        ARCHIVE_OUTPUT_DIRECTORY ${exports})
endfunction()
