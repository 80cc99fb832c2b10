# What an archive of scripts/package holds besides the installed tree. The dev kit's programs and the samples add their own rules where they are built. None of this is part
# of a plain `cmake --install`.
set(archive COMPONENT archive EXCLUDE_FROM_ALL)

# The archive's README says nothing of the scripts, which the archive does not have.
set(readme "${PROJECT_SOURCE_DIR}/README.md")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${readme}")
file(READ "${readme}" text)
string(REGEX REPLACE "<!-- sources only -->[^<]*<!-- end of sources only -->\n\n" "" text "${text}")
if(text MATCHES "sources only|scripts/")
    message(FATAL_ERROR "README.md names scripts outside of what is for the sources only")
endif()
file(WRITE "${PROJECT_BINARY_DIR}/archive-readme/README.md" "${text}")
install(FILES "${PROJECT_BINARY_DIR}/archive-readme/README.md" CHANGELOG.md CONTRIBUTING.md
    DESTINATION . ${archive})
install(DIRECTORY docs DESTINATION . ${archive})
install(DIRECTORY bindings/csharp DESTINATION bindings ${archive})

if(VESK_BUILD_DEVKIT)
    install(FILES packaging/devkit.md DESTINATION devkit RENAME README.md ${archive})
    install(FILES devkit/backend/README.md DESTINATION devkit/backend ${archive})
    install(DIRECTORY samples/minimal samples/game DESTINATION samples ${archive})
    install(FILES ${VESK_SAMPLE_FILES} DESTINATION samples/config ${archive})
    # What the window sample is built with, so that SDL and libcurl are all it needs.
    install(FILES ${VESK_STB_INCLUDE_DIR}/stb_image.h ${VESK_STB_INCLUDE_DIR}/stb_truetype.h
        /usr/share/fonts/truetype/open-sans/OpenSans-Regular.ttf
        DESTINATION samples/game/third_party ${archive})
    install(FILES /usr/share/doc/fonts-open-sans/copyright
        DESTINATION samples/game/third_party RENAME OpenSans-copyright.txt ${archive})
    install(FILES /usr/share/common-licenses/Apache-2.0
        DESTINATION samples/game/third_party RENAME OpenSans-licence.txt ${archive})
    # A folder as a game has it: the program, the library and the files of both.
    install(TARGETS vesk-console RUNTIME DESTINATION devkit/console ${archive})
    install(TARGETS VESKCore
        RUNTIME DESTINATION devkit/console ${archive}
        LIBRARY DESTINATION devkit/console ${archive})
    install(FILES ${VESK_SAMPLE_FILES} DESTINATION devkit/console ${archive})
endif()
