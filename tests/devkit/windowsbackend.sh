#!/bin/sh
# The dev backend for Windows serves the scan page and a picture that the console draws, logs a game
# in over plain HTTP and ends when it is interrupted.
#
# usage: windowsbackend.sh LAUNCHER BACKEND CONSOLE FILE...
#
# CONSOLE is the console, the FILEs lie beside it.
set -eu
launcher=$1 backend=$2 console=$3
shift 2
pid=''
work=$(mktemp -d "${TMPDIR:-/tmp}/vesk-case.XXXXXX")
trap '[ -z "$pid" ] || kill -KILL "$pid" 2>/dev/null || :; rm -rf "$work"' EXIT
trap 'exit 1' HUP INT TERM
die() {
    cat "$work/ready" "$work/errors" "$work/results" 2>/dev/null || :
    echo "$*"
    exit 1
}
ask() { curl --silent --show-error --fail --noproxy '*' --max-time 5 "$@"; }

rc=0
"$launcher" "$backend" --tls >"$work/ready" 2>"$work/errors" || rc=$?
[ $rc = 2 ] || die "--tls ended with $rc"
grep -q 'this build has no TLS' "$work/errors" || die "--tls does not say what is missing"

"$launcher" "$backend" >"$work/ready" 2>"$work/errors" &
pid=$!
tries=0
until grep -q '^vesk-devbackend ready:' "$work/ready"; do
    tries=$((tries + 1))
    if [ $tries -gt 400 ] || ! kill -0 "$pid" 2>/dev/null; then
        die "the dev backend did not start"
    fi
    sleep 0.05
done
url=$(sed -n 's/.* url=\([^ ]*\).*/\1/p' "$work/ready")
control=$(tr -d '\r' <"$work/ready" | sed -n 's/.* control=\([^ ]*\).*/\1/p')

ask "$control/" | grep -q '</html>' || die "the page is not served whole"
cp "$@" "$work"
picture=$(ask -H 'Content-Type: application/json' "$control/sessions" -d '{"channel":"Ferno"}' |
    jq -r .picture)
printf 'VESK_URL = %s\nVESK_GAME_ID = 1106\nVESK_SDK_KEY = dev-key\nFERNO_APP_ID = f-7\n' "$url" \
    >"$work/VESKConfig.ini"
printf 'on_qrcode=20:qr:%s,50:success\n' "$picture" >"$work/ferno_sim.ini"
"$launcher" "$work/$(basename "$console")" login logout --qr --channel Ferno >/dev/null \
    2>"$work/results" || die "the console ended with $?"
grep -q '█' "$work/results" || die "the console does not draw the picture"
verdicts=$(ask "$control/requests" | jq -r 'map("\(.target | split("?")[0]) \(.verdict)") | join(", ")')
[ "$verdicts" = '/v2/auth/pcprecode ok, /v2/auth/login ok, /v2/auth/logout ok' ] ||
    die "the requests were: $verdicts"

# Wine hands an interrupt to the program as Ctrl-C.
kill -INT "$pid"
rc=0
wait "$pid" || rc=$?
pid=''
[ $rc = 0 ] || die "the dev backend ended with $rc"
