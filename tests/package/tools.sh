# shellcheck shell=bash disable=SC2034,SC2154
# What the cases say things with. They run in $case_folder, which is empty, and know the unpacked
# archive of their platform as $package and the Linux one, for the dev backend, as $devkit.

suffix='' compilers=() static=() shared=libVESKCore.so
if [[ "$platform" == windows ]]; then
    suffix=.exe
    static=(-static)
    shared=VESKCore.dll
    compilers=(-DCMAKE_SYSTEM_NAME=Windows -DCMAKE_C_COMPILER=x86_64-w64-mingw32-gcc-posix
        -DCMAKE_CXX_COMPILER=x86_64-w64-mingw32-g++-posix -DCMAKE_EXE_LINKER_FLAGS=-static)
fi

complain() {
    printf '%s\n' "$*"
    exit 1
}

# compile c++|cc ARGUMENT...: as the platform's compiler.
compile() {
    local compiler="$1"
    [[ "$platform" == linux ]] || compiler="x86_64-w64-mingw32-$([[ $1 == cc ]] && echo gcc || echo g++)-posix"
    "$compiler" -Wall -Wextra -Wpedantic -Werror "${@:2}" "${static[@]}"
}

# build SOURCE-FOLDER [OPTION...]: by CMake, into the folder build.
build() {
    cmake -S "$1" -B build -G Ninja -DCMAKE_PREFIX_PATH="$package" "${@:2}"
    cmake --build build
}

# run PROGRAM [ARGUMENT...]: from a folder that is not the program's; leaves what it prints in out.
run() {
    local program="$PWD/$1$suffix" launcher=()
    [[ "$platform" == linux ]] || launcher=("${wine[@]}")
    mkdir -p elsewhere
    (cd elsewhere && timeout 60 "${launcher[@]}" "$program" "${@:2}") </dev/null >raw 2>&1 ||
        complain "$1 ended with $?"
    tr -d '\r' <raw | tee out
    [[ -z "$(ls elsewhere)" ]] || complain "written into the working directory"
}

expect() {
    grep -qF -- "$1" out || complain "not printed: $1"
}

# The program heard of its login; and the library read the messages file beside itself.
expectAnswers() {
    expect "login: 17 Steam SDK init failed!"
    expect "held: 1001 ${1:-$(jq -er '."1001"' "$package"/*/VESKRetMsg.json)}"
}

# layFiles FOLDER: the library and its file, by hand.
layFiles() {
    cp "$package"/*/"$shared" "$package"/*/VESKRetMsg.json "$1"
}

# startBackend FOLDER: the archive's dev backend, for the program in the folder, with the archive's
# Steam simulator beside it.
startBackend() {
    "$devkit/devkit/bin/vesk-devbackend" --tls --ca-out "$1/cacert.pem" >ready 2>&1 &
    backend=$!
    trap 'kill "$backend"' EXIT
    timeout 20 sh -c 'until grep -q "^vesk-devbackend ready" ready; do sleep 0.05; done'
    cp "$package"/devkit/simulators/steam/* "$1"
    sed -i "s|^VESK_URL =.*|VESK_URL = $(sed -n 's/.* url=\([^ ]*\).*/\1/p' ready)|" "$1/VESKConfig.ini"
}
