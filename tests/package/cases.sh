# shellcheck shell=bash disable=SC2016,SC2034,SC2154
# One function, one case; tools.sh has what they are said with.

everywhere=(
    HoldsTheExpectedEntries HoldsTheLicences NamesNothingOfTheBuildingMachine PagesLinkToFilesInside
    PagesNameWhatIsInside WrongSystemIsOneSentence
    LibraryExportsAndImportsTheList SymbolsFindTheLine InventoryTellsWhatIsInside BearsTheTimeOfTheCommit
    FindPackageGivesARunningGameWhoseFilesAreKept PkgConfigLinksIt
    PlainFlagsLinkItFromC SampleLogsIn WindowSampleBuilds ConsoleOfTheDevKitLogsIn
)
windows=(CrossToolchainFindsIt FirstPageLogsIn MsvcAbiLinksByFindPackage)
once=(PageNamesTheOldestGlibc PortHasTheVersion PortConfiguresWithoutDevKit
    UnityArchiveHasItsLayout UnitySampleLogsIn)

HoldsTheExpectedEntries() {
    local wanted="CHANGELOG.md CONTRIBUTING.md README.md bindings devkit docs include lib licences samples sbom.spdx.json symbols"
    [[ "$platform" == linux ]] || wanted="${wanted/bindings/bin bindings}"
    diff <(tr ' ' '\n' <<<"$wanted") <(LC_ALL=C ls "$package")
    local libraries=(libVESKCore.so) programs=(vesk-devbackend vesk-doctor vesk-logread)
    if [[ "$platform" == windows ]]; then
        libraries=(libVESKCore.dll.a libVESKCore.a VESKCore.lib VESKCore.def)
        programs=(vesk-devbackend.exe vesk-doctor.exe vesk-logread.exe ../simulators/kz/KZOpenSDK.dll)
    fi
    (cd "$package/lib" && ls "${libraries[@]}" cmake/VESKCore pkgconfig/VESKCore.pc)
    (cd "$package/devkit/bin" && ls "${programs[@]}" ../simulators/{steam/steam_api64,ferno/frlogin}.dll)
}

HoldsTheLicences() {
    local name names=(curl rapidjson CLI11 cpp-httplib libqrencode stb LGPL-2.1)
    [[ "$platform" == linux ]] || names+=(gcc-runtime GPL-3 mingw-w64-and-winpthreads)
    for name in "${names[@]}"; do
        [[ "$(wc -c <"$package/licences/$name.txt")" -gt 1000 ]] || complain "$name"
    done
}

NamesNothingOfTheBuildingMachine() {
    local path
    for path in "$root" "$VESK_CACHE" "$HOME/" /tmp/; do
        ! grep -raoF -- "$path" "$package" || complain "a file names $path"
    done
}

PagesLinkToFilesInside() {
    local page target count=0
    while IFS=: read -r page target; do
        [[ -e "$(dirname "$page")/$target" ]] || complain "$page links to $target"
        count=$((count + 1))
    done < <(grep -roE --include='*.md' '\]\([A-Za-z./_-]+(#[a-z-]+)?\)' "$package" |
        sed -E 's/:\]\(([^)#]*).*/:\1/')
    [[ "$count" -gt 10 ]] || complain "only $count links"
}

# Scripts, programs of ours, and what lies in the folders that a page names.
PagesNameWhatIsInside() {
    local page name place count=0
    for page in README.md devkit/README.md; do
        while read -r name; do
            place="$(ls -d "$package"/{.,devkit,devkit/bin,devkit/console}/"$name"{,"$suffix"} 2>/dev/null || :)"
            [[ -n "$place" ]] || complain "$page names $name"
            count=$((count + 1))
        done < <(tr '\134' / <"$package/$page" |
            grep -oE '\b(scripts|devkit|samples|bindings|simulators|bin|console)/[A-Za-z0-9_./-]*\w|\bvesk-(console|doctor|logread|devbackend)\b' |
            grep -v cacert.pem)
    done
    [[ "$count" -gt 8 ]] || complain "only $count names"
}

LibraryExportsAndImportsTheList() {
    "$root/scripts/check-binary" "$platform" "$(ls "$package"/{bin,lib}/"$shared" 2>/dev/null)"
}

# As docs/integration.md says it: a place in the stripped library, and what lies there.
SymbolsFindTheLine() {
    local library place line base=0
    library="$(echo "$package"/*/"$shared")"
    if [[ "$platform" == windows ]]; then
        base="0x$(objdump -p "$library" | awk '$1 == "ImageBase" { print $2 }')"
        place="$(llvm-readobj --coff-exports "$library" | awk '$1 == "Name:" { on = $2 == "vesk_describe" } on && $1 == "RVA:" { print $2 }')"
    else
        place="0x$(nm -D "$library" | awk '$3 == "vesk_describe" { print $1 }')"
    fi
    line="$(grep -n ' vesk_describe(' "$root/src/cinterface/veskcmainloop.cpp" | cut -d : -f 1)"
    addr2line -Cfie "$package/symbols/$shared.debug" "$(printf '%#x' $((base + place)))" | tee out
    # The line of the name, or of what is inlined first.
    tail -n 1 out | grep -E "/src/cinterface/veskcmainloop.cpp:($line|$((line + 1)))( |\$)" || complain "another line than $line"
    [[ "$platform" == windows ]] || return 0
    # The PDB, of a function that is not exported.
    cp "$library" .
    cp "$root/dist/VESKCore-$version-windows-x64-VESKCore.pdb" VESKCore.pdb
    place="$(nm -C "$package/symbols/$shared.debug" | awk '/ T .*VESKHTTPClient::SetTransport\(/ { print $1 }')"
    ! llvm-nm VESKCore.dll 2>&1 | grep SetTransport || complain "the library is not stripped"
    llvm-symbolizer --obj=VESKCore.dll "0x$place" | tee out
    expect "VESKHTTPClient::SetTransport("
}

InventoryTellsWhatIsInside() {
    local file="$package/sbom.spdx.json" name sum word="STATIC_LINK" inside=curl
    # What SPDX 2.3 demands of a document, of each package, file and relationship.
    jq -e '.spdxVersion == "SPDX-2.3" and .dataLicense == "CC0-1.0" and .SPDXID == "SPDXRef-DOCUMENT" and .name != "" and
        (.documentNamespace | test("^[a-z]+:[^#]+$")) and (.creationInfo.creators | length > 0) and
        (.creationInfo.created | test("^20[0-9-]{8}T[0-9:]{8}Z$")) and (.packages + .files | length > 10) and
        ([.packages[], .files[] | .SPDXID] | length == (unique | length) and all(test("^SPDXRef-[A-Za-z0-9.-]+$"))) and
        ([.packages[] | .name, .versionInfo, .downloadLocation] | all(. != null and . != "")) and
        ([.files[] | (.fileName | test("^[.]/")) and ([.checksums[].algorithm] | index("SHA1") != null)] | all) and
        ([.packages[], .files[] | .SPDXID] + [.SPDXID]) as $ids |
        .relationships | all(([.spdxElementId, .relatedSpdxElement] - $ids) == [])' "$file"
    jq -r '.packages[] | .name + " " + .versionInfo' "$file" >out
    expect "VESKCore $version"
    name="$(g++ -E -P -x c++ -include rapidjson/rapidjson.h - <<<RAPIDJSON_VERSION_STRING | tail -n 1 | tr -d '" ')"
    grep -Fx "rapidjson $name" out
    [[ "$platform" == windows ]] || word=DYNAMIC_LINK inside=openssl
    name="$(sed -n 's/^curl //p' out)"
    if [[ "$platform" == windows ]]; then
        grep -Fx "$name" < <(strings -a "$package/bin/$shared") || complain "the library has another curl than $name"
    fi
    curl-config --version | grep -Fx "libcurl $name"
    jq -r '(.files | map({(.SPDXID): .fileName}) | add) as $name |
        .relationships[] | "\($name[.spdxElementId]) \(.relationshipType) \(.relatedSpdxElement)"' "$file" >out
    expect "$(cd "$package" && echo ./*/"$shared") $word SPDXRef-$inside"
    expect "CONTAINS SPDXRef-open-sans"
    jq -r '.files[] | "\(.checksums[] | select(.algorithm == "SHA256").checksumValue)  \(.fileName)"' "$file" >sums
    (cd "$package" && sha256sum --strict --check "$OLDPWD/sums")
}

# The same bytes whoever packs it, and when: entries, and what the tools write into programs for Windows.
BearsTheTimeOfTheCommit() {
    local time="@${SOURCE_DATE_EPOCH:-$(git -C "$root" log -1 --format=%ct)}"
    export TZ=UTC
    [[ "$(find "$package" -type f -printf '%Ts\n' | sort -u | wc -l)" == 1 ]] || complain "files have several times"
    if [[ "$platform" == linux ]]; then
        tar --full-time --numeric-owner -tvzf "$root/dist/VESKCore-$version-linux-x64.tar.gz" |
            awk '{ print $2, $4, $5 }' | sort -u >out
        diff out <(date -d "$time" '+0/0 %F %T')
    else
        find "$package" -regex '.*[.]\(dll\|exe\|debug\)' -exec x86_64-w64-mingw32-objdump -p {} \; |
            sed -nE '/stamp[[:space:]]+0$/d; s/^Time.Date[[:space:]]+//p' | sort -u >out
        diff out <(LC_ALL=C date -d "$time" '+%a %b %e %T %Y')
    fi
}

FindPackageGivesARunningGameWhoseFilesAreKept() {
    cp -r "$tests/game" game
    build game -DPAGES="$pages" "${compilers[@]}"
    run build/game
    expect "login: 17 Steam SDK init failed!"
    run build/c/game_c
    expectAnswers "messages of a game"
    expect "version: $version"
    cmp build/VESKConfig.ini "$package"/*/VESKConfig.ini
    echo '# mine' | tee build/VESKConfig.ini game/game.ini
    rm build/VESKRetMsg.json
    cmake --build build
    grep -qx '# mine' build/VESKConfig.ini || complain "the game's own settings are gone"
    cmp build/c/VESKConfig.ini game/game.ini
    cmp build/VESKRetMsg.json "$package"/*/VESKRetMsg.json
}

WrongSystemIsOneSentence() {
    local other=linux system=Linux
    [[ "$platform" == windows ]] || other=windows system=Windows
    ! cmake -S "$package/samples/minimal" -B build "${compilers[@]}" \
        -DVESKCore_DIR="$work/$other/sdk/lib/cmake/VESKCore" >flat 2>&1
    tr -s ' \n' ' ' <flat >out
    expect "This VESKCore is for $system with 64 bits, and the build is for"
}

# As the page says it: a toolchain file hides what is outside of its folders.
CrossToolchainFindsIt() {
    cmake -S "$package/samples/minimal" -B build -G Ninja \
        -DVESKCore_DIR="$package/lib/cmake/VESKCore" \
        -DCMAKE_TOOLCHAIN_FILE="$root/cmake/toolchain-mingw64.cmake"
    cmake --build build
    run build/minimal
    expect "login: 4 CURLCode for more details, thirdCode 7"
}

# "First login" of docs/integration.md, with this archive alone.
FirstPageLogsIn() {
    local command=() port=$((20000 + RANDOM % 20000)) # the page's own may be taken here
    cmake -S "$package/samples/minimal" -B build "${compilers[@]}"
    cmake --build build
    sed -i "s/localhost:8080/localhost:$port/" build/VESKConfig.ini
    read -ra command < <(sed -n 's/^    start //p' "$package/docs/integration.md" | tr '\134' / |
        sed "s/backend /backend.exe /; s/8080/$port/")
    (cd "$package" && exec "${wine[@]}" "${command[@]}") >ready 2>&1 &
    backend=$!
    trap 'kill "$backend"' EXIT
    timeout 20 sh -c 'until grep -q "^vesk-devbackend ready" ready; do sleep 0.05; done'
    run build/minimal
    expect "login: 0 Success, thirdCode 0"
}

PkgConfigLinksIt() {
    local flags
    export PKG_CONFIG_PATH="$package/lib/pkgconfig"
    [[ "$(pkg-config --modversion VESKCore)" == "$version" ]] || complain "another version"
    read -ra flags < <(pkg-config --cflags --libs VESKCore)
    compile c++ -std=c++11 "$pages/README.cpp" -o "game$suffix" \
        "${flags[@]}" -Wl,-rpath,'$ORIGIN'
    layFiles .
    run game
    expect "login: 17 Steam SDK init failed!"
}

PlainFlagsLinkItFromC() {
    compile cc -std=c11 "$tests/game/main.c" "$pages/c-interface.c" -o "game$suffix" \
        -I"$package/include" -L"$package/lib" -lVESKCore -Wl,-rpath,'$ORIGIN'
    layFiles .
    run game
    expectAnswers
}

SampleLogsIn() {
    cp -r "$package/samples/minimal" sample
    build sample "${compilers[@]}"
    startBackend build
    run build/minimal
    expect "login: 0 Success, thirdCode 0"
}

# With SDL and libcurl, and nothing else from outside of the archive.
WindowSampleBuilds() {
    local folders="$package"
    "$root/scripts/bootstrap" --game
    [[ "$platform" == linux ]] || folders+=";$VESK_CACHE/sdl2-windows;$VESK_CACHE/curl-windows"
    cp -r "$package/samples/game" sample
    build sample "${compilers[@]}" -DCMAKE_PREFIX_PATH="$folders"
    [[ -s "build/game$suffix" && -s build/OpenSans-Regular.ttf && -s build/frlogin.dll && -s build/ferno_sim.ini ]] || complain "not built"
}

ConsoleOfTheDevKitLogsIn() {
    cp -r "$package/devkit/console" console
    startBackend console
    run console/vesk-console login status logout --channel Steam --json
    expect '"held":true'
    "$devkit/devkit/bin/vesk-logread" console/veskrecord.log >out
    expect steamid
}

MsvcAbiLinksByFindPackage() {
    mkdir build
    llvm-dlltool -m i386:x86-64 -d "$tests/msvc/kernel32.def" -l build/kernel32.lib
    build "$tests/msvc" -DCMAKE_SYSTEM_NAME=Windows \
        -DCMAKE_C_COMPILER=clang -DCMAKE_C_COMPILER_TARGET=x86_64-pc-windows-msvc \
        -DCMAKE_TRY_COMPILE_TARGET_TYPE=STATIC_LIBRARY -DCMAKE_MSVC_RUNTIME_LIBRARY= \
        -DCMAKE_C_STANDARD_LIBRARIES=
    startBackend build
    run build/visit
    expect "logged in, looked, logged out"
}

PageNamesTheOldestGlibc() {
    local needed
    needed="$(objdump -T "$package/lib/$shared" | grep -oE '\bGLIBC_[0-9.]+' | sort -Vu | tail -n 1)"
    grep -F "glibc ${needed#GLIBC_}," "$package/docs/integration.md"
}

PortHasTheVersion() {
    [[ "$(jq -er .version "$root/packaging/vcpkg/vesk-core/vcpkg.json")" == "$version" ]] ||
        complain "vcpkg.json has another version than the archive"
}

PortConfiguresWithoutDevKit() {
    local options
    mapfile -t options < <(grep -oE -- '-DVESK_[A-Z_]+=[A-Z]+' "$root/packaging/vcpkg/vesk-core/portfile.cmake")
    [[ ${#options[@]} -gt 2 ]] || complain "the port passes no options"
    cmake -S "$root" -B build -G Ninja "${options[@]}"
    ninja -C build -t targets all >out
    expect libVESKCore.so
    # The settings are read while configuring, since they are installed.
    ! grep -vF 'samples/config/VESKConfig.ini: phony' out | grep -E 'devkit|samples|tests/'
}

# The package manager's archive; the same SDK gives the same one, wherever and whenever.
UnityArchiveHasItsLayout() {
    local archive
    archive="$(echo "$root"/dist/com.braxel.vesk-*.tgz)"
    tar -xzf "$archive"
    python3 "$tests/unity_layout.py" "$archive" "$version"
    cmp package/Plugins/x86_64/VESKCore.dll "$work/windows/sdk/bin/VESKCore.dll"
    package=package NamesNothingOfTheBuildingMachine
    cp "$root/dist/VESKCore-$version-windows-x64.zip" .
    (umask 077 && TZ=Asia/Tokyo "$root/packaging/unity.py" ./*.zip .)
    cmp "$archive" com.braxel.vesk-*.tgz
}

# In a project with stand-ins for Unity, and with the library for Linux in the place of the other.
UnitySampleLogsIn() {
    local assembly=(mcs -langversion:7.2 -warn:4 -warnaserror -target:library)
    tar -xzf "$root"/dist/com.braxel.vesk-*.tgz
    "${assembly[@]}" -out:Unity.dll "$root/tests/docs/unity.cs"
    "${assembly[@]}" -out:Runtime.dll package/Runtime/*.cs
    "${assembly[@]}" -out:Editor.dll -r:Unity.dll package/Editor/*.cs
    "${assembly[@]}" -out:Login.dll -r:Unity.dll -r:Runtime.dll package/Samples~/Login/*.cs
    mcs -out:play.exe -r:Unity.dll -r:Runtime.dll -r:Editor.dll -r:Login.dll "$tests/unity.cs"
    mkdir -p project/Assets built/Game_Data/Plugins/x86_64
    mono play.exe build
    startBackend project/Vesk
    cp "$package"/devkit/simulators/ferno/* project/Vesk
    sed -n 's/.* control=/interactive=/p' ready >project/Vesk/ferno_sim.ini
    mono play.exe build
    diff -r project/Vesk built/Game_Data/Plugins/x86_64
    cp "$package/lib/$shared" package/Plugins/x86_64
    LD_LIBRARY_PATH="$PWD/package/Plugins/x86_64" timeout 100 mono play.exe >out 2>&1 || cat out
    expect "the SDK has been uninstalled"
}
