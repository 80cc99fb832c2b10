# Usage: cmake -DOUTPUT=scanpagefiles.cpp -DFOLDER=scanpage -P embed.cmake
# Writes the scan page's files as the definitions that scanpage.h declares.
set(text "// Made by embed.cmake.\n#include \"scanpage/scanpage.h\"\n\nnamespace vesk::backend {\n\nnamespace {\n\n")
set(views)
foreach(entry Html=scanpage.html Css=scanpage.css Js=scanpage.js Icon=icon.svg)
    string(REPLACE "=" ";" entry "${entry}")
    list(GET entry 0 name)
    list(GET entry 1 file)
    file(READ "${FOLDER}/${file}" bytes HEX)
    string(LENGTH "${bytes}" digits)
    math(EXPR size "${digits} / 2")
    # In characters, not as one literal: a compiler may limit the length of those. A char is signed
    # on some, so each byte is a character literal and not a number.
    string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${bytes}")
    string(APPEND text "constexpr char k${name}Bytes[] = {\n    ${bytes}\n};\n\n")
    string(APPEND views "const std::string_view kScanPage${name}(k${name}Bytes, ${size});\n")
endforeach()
string(APPEND text "} // namespace\n\n${views}\n} // namespace vesk::backend\n")
file(WRITE "${OUTPUT}" "${text}")
