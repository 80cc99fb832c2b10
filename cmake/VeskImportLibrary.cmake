# Import libraries for compilers of the MSVC ABI, made on any machine from a definition file. MinGW's
# own libVESKCore.dll.a is of no use to their linkers.
find_program(VESK_DLLTOOL llvm-dlltool)

function(vesk_make_msvc_import_library library definition)
    add_custom_command(OUTPUT "${library}"
        COMMAND "${VESK_DLLTOOL}" -m i386:x86-64 -d "${definition}" -l "${library}"
        DEPENDS "${definition}" VERBATIM)
endfunction()

# Microsoft's linker makes its own VESKCore.lib.
set(VESK_MSVC_IMPORT_LIBRARY "")
if(MINGW AND VESK_DLLTOOL)
    set(VESK_MSVC_IMPORT_LIBRARY "${CMAKE_ARCHIVE_OUTPUT_DIRECTORY}/VESKCore.lib")
    vesk_make_msvc_import_library("${VESK_MSVC_IMPORT_LIBRARY}" "${VESK_DEF_FILE}")
    add_custom_target(vesk_msvc_import_library ALL DEPENDS "${VESK_MSVC_IMPORT_LIBRARY}")
    add_dependencies(VESKCore vesk_msvc_import_library)
endif()
