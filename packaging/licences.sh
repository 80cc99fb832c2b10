#!/usr/bin/env bash
# Usage: packaging/licences.sh linux|windows FOLDER
# Writes the licences of what is linked into an archive's files, from the packages that this machine
# has built them with. A text that is missing, or does not speak of its subject, is an error.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/../scripts/common.sh"

usage="usage: packaging/licences.sh linux|windows FOLDER"
[[ $# -eq 2 && ("$1" == linux || "$1" == windows) ]] || fail "$usage"
platform="$1"
folder="$2"

# platforms, name here, source, words that its text must hold
texts=(
    "linux windows|rapidjson|/usr/share/doc/rapidjson-dev/copyright|Milo Yip"
    "linux windows|CLI11|/usr/share/doc/libcli11-dev/copyright|CLI11"
    "linux windows|cpp-httplib|/usr/share/doc/libcpp-httplib-dev/copyright|httplib"
    "linux windows|libqrencode|/usr/share/doc/libqrencode-dev/copyright|qrencode"
    "linux windows|stb|/usr/share/doc/libstb-dev/copyright|stb"
    "linux windows|LGPL-2.1|/usr/share/common-licenses/LGPL-2.1|LESSER GENERAL PUBLIC LICENSE"
    "linux windows|curl|/usr/share/doc/libcurl4-openssl-dev/copyright|Daniel Stenberg"
    "windows|mingw-w64-and-winpthreads|/usr/share/doc/mingw-w64-x86-64-dev/copyright|winpthreads"
    "windows|gcc-runtime|/usr/share/doc/gcc-mingw-w64-x86-64-posix/copyright|GCC RUNTIME LIBRARY EXCEPTION"
    "windows|GPL-3|/usr/share/common-licenses/GPL-3|GNU GENERAL PUBLIC LICENSE"
)

rm -rf "$folder"
mkdir -p "$folder"
cp "$VESK_ROOT/packaging/licences.md" "$folder/README.md"
for text in "${texts[@]}"; do
    IFS='|' read -r platforms name source words <<<"$text"
    [[ " $platforms " == *" $platform "* ]] || continue
    grep -qF "$words" "$source" || fail "$source is missing, or is not the licence of $name"
    cp "$source" "$folder/$name.txt"
    grep -qF "\`$name.txt\`" "$folder/README.md" || fail "packaging/licences.md does not name $name"
done
