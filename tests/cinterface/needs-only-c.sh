#!/bin/sh
# Usage: needs-only-c.sh NM PROGRAM
# Checks that the program takes the library's plain C names, and none of its C++.
set -eu
names=$("$1" "$2")
echo "$names" | grep -q 'vesk_login$' || { echo "the program does not call vesk_login"; exit 1; }
! echo "$names" | grep Braxel
