#!/bin/sh
# Runs one test case in a process and a folder of its own.
#
# usage: run-case.sh [--plain] [--copies] [--launcher wine] [--backend PROGRAM]
#                    PROGRAM CASE [FILE[=NAME]]...
#
# PROGRAM is a GoogleTest program, CASE is Suite.Case. With --plain it is any other program: it finds
# the SDK configured for the backend, has to end with 0 and to print CASE as a line. The FILEs lie
# beside the program, under NAME when one is given. With --backend a dev backend runs over HTTPS for
# the length of the case, and its cacert.pem lies there too. With --copies the
# case may change or remove its FILEs: Windows holds on to a library that another case runs, under whatever name. The program
# finds in its environment VESK_TEST_FOLDER, VESK_TEST_BACKEND_URL and VESK_TEST_CONTROL_URL.
# VESK_KEEP=1 keeps the folder, VESK_CASE_SECONDS is how long the case may take, VESK_CASE_HTTP=1 leaves
# TLS out.
set -eu

launcher='' backend='' backend_pid='' plain='' copies=''
while :; do
    case $1 in
        --plain)
            plain=1
            shift
            continue
            ;;
        --copies)
            copies=1
            shift
            continue
            ;;
        --launcher) launcher=$2 ;;
        --backend) backend=$2 ;;
        *) break ;;
    esac
    shift 2
done
program=$1 name=$2
shift 2

work=$(mktemp -d "${TMPDIR:-/tmp}/vesk-case.XXXXXX")
finish() {
    if [ -n "$backend_pid" ]; then
        kill "$backend_pid" 2>/dev/null || :
    fi
    if [ "${VESK_KEEP:-}" = 1 ]; then
        echo "kept: $work"
    else
        rm -rf "$work"
    fi
}
trap finish EXIT
trap 'exit 1' HUP INT TERM

# The working directory is another one: a file that turns up there was written to the wrong place.
mkdir "$work/game" "$work/elsewhere"
put() {
    mkdir -p "$(dirname "$2")"
    # Programs and libraries are large and never written to; anything else gets a copy of its own.
    { [ -z "$copies" ] && [ -x "$1" ] && ln "$1" "$2" 2>/dev/null; } || cp "$1" "$2"
}
put "$program" "$work/game/$(basename "$program")"
for file in "$@"; do
    source=${file%%=*}
    put "$source" "$work/game/$(case $file in *=*) echo "${file#*=}" ;; *) basename "$source" ;; esac)"
done

if [ -n "$backend" ]; then
    tls=1
    [ -z "${VESK_CASE_HTTP:-}" ] || tls=''
    "$backend" ${tls:+--tls --ca-out "$work/game/cacert.pem"} >"$work/ready" 2>"$work/backend.log" &
    backend_pid=$!
    tries=0
    until grep -q '^vesk-devbackend ready:' "$work/ready"; do
        tries=$((tries + 1))
        if [ $tries -gt 400 ] || ! kill -0 "$backend_pid" 2>/dev/null; then
            cat "$work/backend.log"
            echo "the dev backend did not start: $backend"
            exit 1
        fi
        sleep 0.05
    done
    VESK_TEST_BACKEND_URL=$(sed -n 's/.* url=\([^ ]*\).*/\1/p' "$work/ready")
    VESK_TEST_CONTROL_URL=$(sed -n 's/.* control=\([^ ]*\).*/\1/p' "$work/ready")
    export VESK_TEST_BACKEND_URL VESK_TEST_CONTROL_URL
fi

filter=--gtest_filter=$name
if [ -n "$plain" ]; then
    filter=''
    printf 'VESK_URL = %s\nVESK_GAME_ID = 1106\nVESK_SDK_KEY = dev-key\nSTEAM_APP_ID = 480\n' \
        "$VESK_TEST_BACKEND_URL" >"$work/game/VESKConfig.ini"
fi

# Windows programs see the root folder as drive Z.
VESK_TEST_FOLDER=${launcher:+Z:}$work/game
export VESK_TEST_FOLDER
cd "$work/elsewhere"
status=0
timeout "${VESK_CASE_SECONDS:-60}" ${launcher:+"$launcher"} "$work/game/$(basename "$program")" ${filter:+"$filter"} \
    </dev/null >"$work/output" 2>&1 || status=$?
# What the library prints at each assignment of a text would drown the rest.
sed 's/len:[0-9][0-9]*//g' "$work/output"
[ $status != 124 ] || echo "stopped after ${VESK_CASE_SECONDS:-60} seconds"
[ $status = 0 ] || exit $status

if [ -n "$plain" ]; then
    if ! tr -d '\r' <"$work/output" | grep -qxF "$name"; then
        echo "the program has not printed: $name"
        exit 1
    fi
# A filter that selects nothing passes with GoogleTest.
elif ! grep -q '^\[  PASSED  \] 1 test\.' "$work/output"; then
    echo "not exactly one case ran: $name"
    exit 1
fi
if [ -n "$(ls -A "$work/elsewhere")" ]; then
    echo "written into the working directory: $(ls -A "$work/elsewhere")"
    exit 1
fi
