#!/usr/bin/env bash
# Tests the launcher with a stand-in for the program, in a home folder of its own.
set -euo pipefail
launcher=$1

home=$(mktemp -d)
owl=
trap '[ -z "$owl" ] || kill "$owl" 2>/dev/null; rm -rf "$home"' EXIT
unset XDG_DATA_HOME
export HOME=$home
export ULMARO_DATA=$home/installed ULMARO_PROGRAM=$home/program
folder=$home/.local/share/ulmaro-assistant
mkdir "$ULMARO_DATA"
echo picture >"$ULMARO_DATA/hat"
printf '#!/bin/sh\npwd >started\nexec sleep 60\n' >"$ULMARO_PROGRAM"
chmod +x "$ULMARO_PROGRAM"

fail() { echo "FAILED: $1" >&2; exit 1; }
wait_for() { for _ in $(seq 100); do [ -e "$1" ] && return; sleep 0.05; done; fail "no $1"; }

"$launcher" &
owl=$!
wait_for "$folder/started"
[ "$(cat "$folder/started")" = "$folder" ] || fail 'the program does not start in the data folder'
[ "$(readlink "$folder/hat")" = "$ULMARO_DATA/hat" ] || fail 'the data files are not linked'
[ "$(stat -c %a "$folder")" = 700 ] || fail 'the data folder is not private'

rm "$folder/started"
if "$launcher" 2>"$home/errors"; then fail 'a second copy starts'; fi
[ "$(cat "$home/errors")" = "Ulmaro Assistant e' gia' in esecuzione." ] || fail 'the second copy does not say why it ends'
[ ! -e "$folder/started" ] || fail 'the second copy starts the program'

echo events >"$folder/database.bin"
kill "$owl"
wait "$owl" || true
"$launcher" &
owl=$!
wait_for "$folder/started"
[ "$(cat "$folder/database.bin")" = events ] || fail 'the events are lost'

kill "$owl"
wait "$owl" || true
XDG_DATA_HOME=$home/elsewhere "$launcher" &
owl=$!
wait_for "$home/elsewhere/ulmaro-assistant/started"
echo 'The launcher behaves.'
