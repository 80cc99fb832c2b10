# shellcheck shell=bash
# Sourced by the other scripts: where things are, and how to say what happens.

VESK_ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
# What is expensive to make and the same for every checkout: the Windows libcurl, the Wine prefix.
export VESK_CACHE="${VESK_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/veskcore}"
VESK_JOBS="${VESK_JOBS:-$(nproc)}"

# Backends of ours are on this machine: no proxy may stand in between.
export no_proxy="localhost,127.0.0.1${no_proxy:+,$no_proxy}"

say() {
    printf '%s\n' "$*"
}

fail() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# In front of what cannot live with every layout of a randomised address space: Wine and the thread
# sanitizer. Empty where it cannot be asked for.
fixedAddresses=()
# shellcheck disable=SC2034
if setarch --addr-no-randomize true 2>/dev/null; then
    fixedAddresses=(setarch --addr-no-randomize)
fi

# Our files whose name matches, each with a zero byte behind it: listFiles PATTERN KIND..., where a
# KIND is one of git ls-files' options.
listFiles() {
    local pattern="$1" file
    shift
    git ls-files -z --exclude-standard "$@" | sort -zu | { grep -zE "$pattern" || true; } |
        while IFS= read -r -d '' file; do
            [[ ! -f "$file" || -L "$file" ]] || printf '%s\0' "$file"
        done
}

# Configures a preset when it never was; after that, ninja sees changes by itself.
configurePreset() {
    local folder="$VESK_ROOT/build/$1"
    if [[ ! -f "$folder/build.ninja" || "$VESK_ROOT/CMakePresets.json" -nt "$folder/configured" ]]; then
        (cd "$VESK_ROOT" && cmake --preset "$1") && touch "$folder/configured"
    fi
}

# Builds a preset, or only some targets of it: buildPreset PRESET [TARGET...]. Waits while another script
# builds it. What the tools print goes to build/PRESET.log and is shown only when something fails.
buildPreset() {
    local preset="$1" log="$VESK_ROOT/build/$1.log" target arguments=() failed=""
    shift
    for target in "$@"; do
        arguments+=(--target "$target")
    done
    mkdir -p "$VESK_ROOT/build"
    exec 7>"$VESK_ROOT/build/$preset.lock"
    flock 7
    {
        configurePreset "$preset" &&
            cmake --build "$VESK_ROOT/build/$preset" --parallel "$VESK_JOBS" "${arguments[@]}" 7>&-
    } >"$log" 2>&1 </dev/null || failed=yes
    exec 7>&-
    if [[ -n "$failed" ]]; then
        say "The build of preset $preset failed. The end of build/$preset.log:"
        tail -n 60 "$log"
        return 1
    fi
}
