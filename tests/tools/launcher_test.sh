#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
# SPDX-License-Identifier: MIT
#
# Tests the launcher with a stand-in for the program, in a home folder of its own, whose name has a blank.
set -euo pipefail
launcher=$(realpath "$1")

scratch=$(mktemp -d)
home="$scratch/an owl's home"
owl=
trap '[ -z "$owl" ] || kill "$owl" 2>/dev/null; rm -rf "$scratch"' EXIT
unset XDG_DATA_HOME
export HOME=$home
export ULMARO_DATA="$home/data files" ULMARO_PROGRAM="$home/the program"
folder=$home/.local/share/ulmaro-assistant
# make_data FOLDER NAME...: makes a data folder that lists these files, and each file, with the folder's path in it.
make_data() {
  local data=$1 name
  mkdir -p "$data"
  shift
  printf '%s\n' "$@" >"$data/data_files.list"
  for name in "$@"; do echo "$data" >"$data/$name"; done
}
make_data "$ULMARO_DATA" hat
cat >"$ULMARO_PROGRAM" <<'PROGRAM'
#!/bin/sh
{ pwd; printf '%s\n' "$@"; } >"$HOME/started"
exec sleep 60
PROGRAM
chmod +x "$ULMARO_PROGRAM"

fail() { echo "FAILED: $1" >&2; exit 1; }
wait_for() { for _ in $(seq 100); do [ -s "$1" ] && return; sleep 0.05; done; fail "no $1"; }
# start ARGUMENT...: starts the launcher and waits for the program.
start() {
  rm -f "$home/started"
  "$launcher" "$@" 2>"$home/errors" &
  owl=$!
  wait_for "$home/started"
}
stop() { kill "$owl"; wait "$owl" 2>/dev/null || true; owl=; }
# expect_refusal WHAT LINE: the launcher ends with status 1 and that line, and starts nothing.
expect_refusal() {
  rm -f "$home/started"
  local status=0
  "$launcher" 2>"$home/errors" || status=$?
  [ "$status" = 1 ] || fail "$1: status $status"
  [ "$(cat "$home/errors")" = "$2" ] || fail "$1: it says '$(cat "$home/errors")'"
  [ ! -e "$home/started" ] || fail "$1: the program starts"
}

# The first start.
start -display 'a b'
[ "$(cat "$home/started")" = "$folder"$'\n-display\na b' ] || fail 'not the data folder or the arguments'
[ "$(readlink "$folder/hat")" = "$ULMARO_DATA/hat" ] || fail 'the data files are not linked'
[ "$(stat -c %a "$folder")" = 700 ] || fail 'the data folder is not private'
[ "$(ls -A "$folder")" = hat ] || fail 'more than the data files is in the folder'

# A second copy over the same folder, which must not even touch the links.
make_data "$home/other data" hat
ULMARO_DATA="$home/other data" expect_refusal 'a second copy' "Ulmaro Assistant e' gia' in esecuzione."
[ "$(readlink "$folder/hat")" = "$ULMARO_DATA/hat" ] || fail 'a second copy changes the links'

# The next start finds the events, and a folder that somebody has opened to all is private again.
stop
echo events >"$folder/database.bin"
chmod 755 "$folder"
start
[ "$(cat "$folder/database.bin")" = events ] || fail 'the events are lost'
[ "$(stat -c %a "$folder")" = 700 ] || fail 'the data folder is not private again'
stop

# Somebody ran the program in the data files' folder itself: the user's own events stay theirs.
echo "somebody's" >"$ULMARO_DATA/database.bin"
start
[ ! -L "$folder/database.bin" ] || fail 'a link takes the place of the events'
[ "$(cat "$folder/database.bin")" = events ] || fail 'other events take the place of the events'
stop
rm "$folder/database.bin"
start
[ ! -e "$folder/database.bin" ] || fail "somebody's events become the user's"
stop
rm "$ULMARO_DATA/database.bin"

# A picture of the user's own stays, also where there is no other; a link of theirs to a disk that is not there too.
rm "$folder/hat"
echo mine >"$folder/hat"
ln -s /not/there/database.bin "$folder/database.bin"
start
[ "$(cat "$folder/hat")" = mine ] || fail "the user's own picture is replaced"
[ -L "$folder/database.bin" ] || fail "the user's own link is gone"
stop
rm "$ULMARO_DATA/hat"
start
[ "$(cat "$folder/hat")" = mine ] || fail "the user's own picture is gone"
stop
rm "$folder/hat" "$folder/database.bin"
make_data "$ULMARO_DATA" hat

# After an upgrade the links lead to the new files, and none to files that are gone.
make_data "$ULMARO_DATA" hat old
start
stop
rm "$ULMARO_DATA/old"
make_data "$ULMARO_DATA" hat
start
[ ! -L "$folder/old" ] || fail 'a link to a file that is gone stays'
stop
ULMARO_DATA="$home/other data"
start
[ "$(cat "$folder/hat")" = "$ULMARO_DATA" ] || fail 'the links still lead to the old files'
stop
mkdir "$home/folder"
ln -sfn "$home/folder" "$folder/hat"
start
[ "$(readlink "$folder/hat")" = "$ULMARO_DATA/hat" ] || fail 'a link to a folder is not renewed'
[ -z "$(ls "$home/folder")" ] || fail 'something is made where a link led'
stop

# On a disk that has become read-only the owl still starts. Only root can make one.
if [ "$(id -u)" = 0 ] && mkdir "$home/disk" && mount -t tmpfs none "$home/disk" 2>/dev/null; then
  trap '[ -z "$owl" ] || kill "$owl" || true; umount -l "$home/disk"; rm -rf "$scratch"' EXIT
  XDG_DATA_HOME=$home/disk start
  stop
  mount -o remount,ro "$home/disk"
  XDG_DATA_HOME=$home/disk start
  stop
else
  echo 'Not tested: a read-only disk, which only root can make.'
fi

# Where the folder is.
XDG_DATA_HOME=$home/elsewhere start
[ "$(head -n 1 "$home/started")" = "$home/elsewhere/ulmaro-assistant" ] || fail 'XDG_DATA_HOME is not heard'
stop
XDG_DATA_HOME=relative start
[ "$(head -n 1 "$home/started")" = "$folder" ] || fail 'a relative XDG_DATA_HOME is heard'
stop
cd "$home"
ULMARO_DATA='other data' ULMARO_PROGRAM='the program' start
cd - >/dev/null
[ "$(readlink "$folder/hat")" = "$home/other data/hat" ] || fail 'relative folders make dangling links'
stop

# Folders of the same names where CDPATH points to.
mkdir -p "$home/trap"
make_data "$home/trap/other data" hat
cp "$ULMARO_PROGRAM" "$home/trap/the program"
cd "$home"
CDPATH=$home/trap ULMARO_DATA='other data' ULMARO_PROGRAM='the program' start
cd - >/dev/null
[ "$(readlink "$folder/hat")" = "$home/other data/hat" ] || fail 'CDPATH leads astray'
stop
make_data "$home/data with a newline"$'\n' hat
ULMARO_DATA=$home/data\ with\ a\ newline$'\n' start
[ "$(cat "$folder/hat"; echo .)" = "$home/data with a newline"$'\n\n.' ] || fail 'a newline at the end of a path is lost'
stop

# Whom the folders let in. The one that is there already stays as it is.
mkdir -m 755 "$home/open"
modes() { stat -c %a "$home/open" "$home/open/a" "$home/open/a/b" "$home/open/a/b/ulmaro-assistant" | tr '\n' ' '; }
umask 022
XDG_DATA_HOME=$home/open/a/b start
[ "$(modes)" = '755 700 700 700 ' ] || fail "folders above the data folder are open to others: $(modes)"
stop
# With setgid, which it may have from the folder above, it is as good, and on a foreign disk nobody could change it.
chmod g+s "$home/open/a/b/ulmaro-assistant"
mkdir "$home/no chmod"
printf '#!/bin/sh\nexit 1\n' >"$home/no chmod/chmod"
chmod +x "$home/no chmod/chmod"
PATH=$home/no\ chmod:$PATH XDG_DATA_HOME=$home/open/a/b start
[ "$(modes)" = '755 700 700 2700 ' ] || fail "the modes have changed: $(modes)"
stop
chmod 2750 "$home/open/a/b/ulmaro-assistant"
XDG_DATA_HOME=$home/open/a/b start
[ "$(modes)" = '755 700 700 2700 ' ] || fail "a folder with setgid is not private again: $(modes)"
stop
umask 477
XDG_DATA_HOME=$home/open/tight start
umask 022
[ "$(stat -c %a "$home/open/tight")" = 300 ] || fail "the user's umask is not heard"
stop
chmod 700 "$home/open/tight"

# The list decides what is linked.
ULMARO_DATA=$home/two\ files
make_data "$ULMARO_DATA" hat notify.wav
echo draft >"$ULMARO_DATA/draft"
XDG_DATA_HOME=$home/new start
[ "$(ls "$home/new/ulmaro-assistant")" = $'hat\nnotify.wav' ] || fail 'not what the list names is linked'
stop

# What is missing is told before the owl starts, the first by its name.
missing() { echo "Ulmaro Assistant: il file \"$1\" manca o non si puo' leggere."; }
rm "$ULMARO_DATA/notify.wav"
XDG_DATA_HOME=$home/new expect_refusal 'a missing file, linked before' "$(missing notify.wav)"
XDG_DATA_HOME=$home/fresh expect_refusal 'a missing file, never linked' "$(missing notify.wav)"
[ "$(ls -A "$home/fresh/ulmaro-assistant")" = hat ] || fail 'a link is made to a file that is missing'
rm "$ULMARO_DATA/hat"
XDG_DATA_HOME=$home/new expect_refusal 'two missing files' "$(missing hat)"
mkdir "$ULMARO_DATA/hat"
XDG_DATA_HOME=$home/new expect_refusal 'a folder in place of a file' "$(missing hat)"
rmdir "$ULMARO_DATA/hat"
mkfifo "$ULMARO_DATA/hat"
XDG_DATA_HOME=$home/new expect_refusal 'a pipe in place of a file' "$(missing hat)"
rm "$ULMARO_DATA/hat"
make_data "$ULMARO_DATA" hat notify.wav
if [ "$(id -u)" != 0 ]; then
  chmod 200 "$ULMARO_DATA/hat"
  XDG_DATA_HOME=$home/new expect_refusal 'a file that cannot be read' "$(missing hat)"
  chmod 600 "$ULMARO_DATA/hat"
else
  echo 'Not tested: a file that cannot be read, which root always can.'
fi
XDG_DATA_HOME=$home/new start
stop
make_data "$ULMARO_DATA" hat window_icon
rm "$ULMARO_DATA/window_icon"
XDG_DATA_HOME=$home/new start  # which does without
stop
rm "$ULMARO_DATA/data_files.list"
XDG_DATA_HOME=$home/new expect_refusal 'no list' "$(missing data_files.list)"
ULMARO_DATA=$home/data\ files

# What cannot be.
HOME='' expect_refusal 'no home' \
  "Ulmaro Assistant: non so dove tenere gli eventi, perche' HOME e' vuota."
(cd "$home" && HOME=relative expect_refusal 'a relative home' \
  "Ulmaro Assistant: non so dove tenere gli eventi, perche' HOME non comincia con una barra.")
[ ! -e "$home/relative" ] || fail 'a folder is made in a relative home'
ULMARO_PROGRAM=$home/none expect_refusal 'no program' 'Ulmaro Assistant: manca il programma.'
ULMARO_DATA=$home/none expect_refusal 'no data' 'Ulmaro Assistant: manca la cartella dei dati.'
touch "$home/file"
XDG_DATA_HOME=$home/file expect_refusal 'no folder' \
  "Ulmaro Assistant: non posso creare la cartella \"$home/file/ulmaro-assistant\"."
mkdir "$home/bin"
printf '#!/bin/sh\nexit 71\n' >"$home/bin/flock"
chmod +x "$home/bin/flock"
PATH=$home/bin:$PATH expect_refusal 'no locks' "Ulmaro Assistant: non posso bloccare la cartella \"$folder\"."
echo 'The launcher behaves.'
