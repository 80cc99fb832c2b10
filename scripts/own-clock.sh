# shellcheck shell=bash
# Usage: source scripts/own-clock.sh (after scripts/wine-env), then start programs with
#   env "${fastClock[@]}" PROGRAM             a Linux program whose time runs fast
#   startWine; startClockedWine FOLDER; env "${clockedWine[@]}" "${wine[@]}" PROGRAM; forwardClock SECONDS;
#   stopClockedWine                           a Windows program whose clock can be set
# and, when it has ended, forgetClock PID.
# Clocks that are not the machine's, by Debian's faketime: some things happen after minutes only.

clockFactor=20
# The dynamic loader itself puts the machine's folder in here.
# shellcheck disable=SC2016
clockLibrary='LD_PRELOAD=/usr/$LIB/faketime/libfaketimeMT.so.1'
# Without it each access to a file would take a false time, too.
clockRules=(NO_FAKE_STAT=1)

# Time-outs go by the monotonic clock, which stays as it is: those of a request, in particular.
# shellcheck disable=SC2034
fastClock=("$clockLibrary" "FAKETIME=+0 x$clockFactor" FAKETIME_DONT_FAKE_MONOTONIC=1
    "${clockRules[@]}")

# Under Wine the server does the waiting, for all programs alike and by the monotonic clock. A fast
# clock would shorten every time-out: that of a request, and that after which a program that is
# slow to end is killed. So time runs as ever, and jumps when the clock is set forward. The server
# looks at its clock every few milliseconds, and sees who has waited long enough.
clockedWine=()
clockedPrefix=

# The registry gets to the disk half a minute after the prefix was made, or when the server ends.
awaitRegistry() {
    local file tries=0
    for file in system.reg user.reg userdef.reg; do
        if [[ ! -s "$WINEPREFIX/$file" ]]; then
            stopWine
        fi
        until [[ -s "$WINEPREFIX/$file" ]]; do
            tries=$((tries + 1))
            [[ "$tries" -le 600 ]] || return 1
            sleep 0.1
        done
    done
}

# A server of its own, whose clock is nobody else's, needs a prefix of its own. The large part of it,
# the installed Windows files, is shared; the registry is a copy.
startClockedWine() {
    local folder="$1"
    awaitRegistry || return 1
    # What an interrupted run may have left.
    clockedPrefix="$folder"
    stopClockedWine
    clockedPrefix="$folder"
    mkdir -p "$clockedPrefix" || return 1
    cp -a "$WINEPREFIX"/{system.reg,user.reg,userdef.reg,.update-timestamp,dosdevices} \
        "$clockedPrefix" || return 1
    ln -s "$WINEPREFIX/drive_c" "$clockedPrefix/drive_c" || return 1
    forwardClock 0
    # shellcheck disable=SC2034
    clockedWine=("WINEPREFIX=$clockedPrefix" "$clockLibrary" "${clockRules[@]}"
        "FAKETIME_TIMESTAMP_FILE=$clockedPrefix/clock" FAKETIME_NO_CACHE=1)
}

# From now on the clock is that many seconds ahead of the machine's.
forwardClock() {
    printf '+%s\n' "$1" >"$clockedPrefix/clock.new"
    # In one step: the file may be read at any time.
    mv "$clockedPrefix/clock.new" "$clockedPrefix/clock"
}

stopClockedWine() {
    [[ -n "$clockedPrefix" ]] || return 0
    if [[ -d "$clockedPrefix" ]]; then
        WINEPREFIX="$clockedPrefix" wineserver -k </dev/null >/dev/null 2>&1 || true
        WINEPREFIX="$clockedPrefix" wineserver -w </dev/null >/dev/null 2>&1 || true
        rm -rf "$clockedPrefix"
    fi
    clockedPrefix=
}

# A program that ends without its exit handlers, as all do under Wine, leaves this behind, and the
# next process with the same number could not start.
forgetClock() {
    rm -f "/dev/shm/faketime_shm_$1" "/dev/shm/sem.faketime_sem_$1"
}
