# Usage: cmake -DOUTPUT=consolefiles.cpp -DFOLDER=console -P embed-console.cmake
# Writes the console's files as the definitions that consolefiles.h declares.
set(text "// Made by embed-console.cmake.\n#include \"scanpage/consolefiles.h\"\n\nnamespace vesk::backend {\n\nnamespace {\n\n")
set(views)
foreach(entry Html=console.html Css=console.css Js=console.js Icon=icon.svg)
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
    string(APPEND views "const std::string_view kConsole${name}(k${name}Bytes, ${size});\n")
endforeach()
string(APPEND text "} // namespace\n\n${views}\n} // namespace vesk::backend\n")
file(WRITE "${OUTPUT}" "${text}")
