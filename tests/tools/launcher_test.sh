#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
# SPDX-License-Identifier: MIT
#
# Tests the launcher with stand-ins for the program, for what raises its window and for what shows notifications and
# messages, in a home folder of its own, whose name has a blank.
#
# usage: launcher_test.sh LAUNCHER VERSION
set -euo pipefail
launcher=$(realpath "$1")
version=$2

scratch=$(mktemp -d)
home="$scratch/an owl's home"
owl=
# What is shown last may still be written while the folder is removed.
tidy_up() {
  [ -z "$owl" ] || kill "$owl" 2>/dev/null || true
  rm -rf "$scratch" 2>/dev/null || { sleep 1; rm -rf "$scratch"; }
}
trap tidy_up EXIT
unset XDG_DATA_HOME XDG_CONFIG_HOME DISPLAY
export HOME=$home SCRATCH=$scratch
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
[ ! -e "$SCRATCH/script" ] || . "$SCRATCH/script"
exec sleep 60
PROGRAM
cat >"$home/raise_window" <<'RAISE'
#!/bin/sh
echo "$DISPLAY $*" >"$SCRATCH/raised"
[ ! -e "$SCRATCH/no window" ]
RAISE
# Each notification and each message becomes a file of its own. "no server" and "hung server" stand for what they say.
mkdir "$scratch/bin"
cat >"$scratch/bin/notify-send" <<'NOTIFY'
#!/bin/sh
[ ! -e "$SCRATCH/no server" ] || exit 1
[ ! -e "$SCRATCH/hung server" ] || exec sleep 60
for last; do :; done
printf '%s\n' "$last" >"$SCRATCH/new.$$"
printf '%s\n' "$@" >"$SCRATCH/words"
mv "$SCRATCH/new.$$" "$SCRATCH/shown.$(date +%s%N)"
NOTIFY
cat >"$scratch/bin/xmessage" <<'MESSAGE'
#!/bin/sh
cat >"$SCRATCH/new.$$"
mv "$SCRATCH/new.$$" "$SCRATCH/message.$(date +%s%N)"
while [ -e "$SCRATCH/nobody clicks" ]; do sleep 0.05; done
MESSAGE
chmod +x "$ULMARO_PROGRAM" "$home/raise_window" "$scratch"/bin/*
PATH=$scratch/bin:$PATH

fail() { echo "FAILED: $1" >&2; exit 1; }
wait_for() { for _ in $(seq 100); do [ -s "$1" ] && return; sleep 0.05; done; fail "no $1"; }
# start ARGUMENT...: starts the launcher without a terminal and waits for the program.
start() {
  rm -f "$home/started"
  "$launcher" "$@" </dev/null >/dev/null 2>"$home/errors" &
  owl=$!
  wait_for "$home/started"
}
stop() { kill "$owl"; wait "$owl" 2>/dev/null || true; owl=; }
# Prints what was shown of a kind, notification (shown) or message, in the order in which it came; forget forgets it.
seen() { find "$scratch" -name "$1.*" | sort | xargs -rd '\n' cat; }
forget() { rm -f "$scratch"/shown.* "$scratch"/message.* "$scratch/words" "$scratch/raised"; }
# expect_seen KIND TEXT WHAT: waits until exactly this was shown.
expect_seen() {
  for _ in $(seq 140); do [ "$(seen "$1")" != "$2" ] || return 0; sleep 0.05; done
  fail "$3: shown was '$(seen "$1")'"
}
# expect_end STATUS WHAT LINE ARGUMENT...: without a terminal the launcher ends with that status and line, and starts
# nothing. The notification says the same as the line.
expect_end() {
  local want=$1 what=$2 line=$3 status=0 text
  shift 3
  rm -f "$home/started"
  forget
  "$launcher" "$@" </dev/null >/dev/null 2>"$home/errors" || status=$?
  [ "$status" = "$want" ] || fail "$what: status $status"
  [ "$(cat "$home/errors")" = "$line" ] || fail "$what: it says '$(cat "$home/errors")'"
  [ ! -e "$home/started" ] || fail "$what: the program starts"
  text=${line#Ulmaro Assistant: }
  text=${text//\\/\\\\}
  text=${text//'<'/'&lt;'}
  text=${text//'>'/'&gt;'}
  expect_seen shown "${text^}" "$what"
}
expect_refusal() { expect_end 1 "$@"; }
# in_terminal COMMAND...: runs it in a terminal of its own and prints what that shows; "status" is a file.
in_terminal() {
  script -qec "$(printf '%q ' "$@"); echo \$? >$scratch/status" /dev/null </dev/null | tr -d '\r'
}

# The first start.
start -display 'a b'
[ "$(cat "$home/started")" = "$folder"$'\n-display\na b' ] || fail 'not the data folder or the arguments'
[ "$(readlink "$folder/hat")" = "$ULMARO_DATA/hat" ] || fail 'the data files are not linked'
[ "$(stat -c %a "$folder")" = 700 ] || fail 'the data folder is not private'
[ "$(ls -A "$folder")" = hat ] || fail 'more than the data files is in the folder'

# A second copy over the same folder, which must not even touch the links.
make_data "$home/other data" hat
running="Ulmaro Assistant e' gia' in esecuzione."
touch "$scratch/no window"
ULMARO_DATA="$home/other data" expect_refusal 'a second copy' "$running"
[ "$(readlink "$folder/hat")" = "$ULMARO_DATA/hat" ] || fail 'a second copy changes the links'

# It brings the first one's window up, on the screen that is meant, and then shows nothing else.
[ "$(cat "$scratch/raised")" = " $folder" ] || fail 'no window is looked for'
rm "$scratch/no window"
expect_raised() {
  local status=0
  forget
  "$launcher" "${@:2}" </dev/null >/dev/null 2>"$home/errors" || status=$?
  sleep 0.2
  [ "$status" = 1 ] || fail "a second copy that raises the window: status $status"
  [ "$(cat "$home/errors")" = "$running" ] || fail 'a second copy that raises the window does not say why it ends'
  [ "$(cat "$scratch/raised" 2>/dev/null)" = "$1" ] || fail "raised was '$(cat "$scratch/raised")', not '$1'"
  [ -z "$(seen shown)" ] || fail 'a second copy shows something beside the window'
}
expect_raised " $folder"
expect_raised ":7 $folder" -display :7 --size 500
expect_raised '' --minimised
said=$(in_terminal "$launcher")
[ "$said" = "$running" ] || fail "in a terminal, a second copy says '$said'"
[ "$(cat "$scratch/status")" = 1 ] || fail 'in a terminal, a second copy has another status'
[ "$(cat "$scratch/raised")" = " $folder" ] || fail 'in a terminal, a second copy raises nothing'

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
  trap 'umount -l "$home/disk"; tidy_up' EXIT
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
missing() { echo "Ulmaro Assistant: il file \"$1\" manca o non si riesce a leggere."; }
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
ULMARO_PROGRAM=$home/none expect_refusal 'no program' "Ulmaro Assistant: manca il programma \"$home/none\"."
ULMARO_PROGRAM=$home expect_refusal 'a folder as program' "Ulmaro Assistant: manca il programma \"$home\"."
touch "$home/empty"
chmod +x "$home/empty"
ULMARO_PROGRAM=$home/empty expect_refusal 'an empty program' "Ulmaro Assistant: manca il programma \"$home/empty\"."
ULMARO_DATA=$home/none expect_refusal 'no data' "Ulmaro Assistant: manca la cartella dei dati \"$home/none\"."
touch "$home/file"
XDG_DATA_HOME=$home/file expect_refusal 'no folder' \
  "Ulmaro Assistant: non riesco a creare la cartella \"$home/file/ulmaro-assistant\"."
mkdir "$home/bin"
printf '#!/bin/sh\nexit 71\n' >"$home/bin/flock"
chmod +x "$home/bin/flock"
PATH=$home/bin:$PATH expect_refusal 'no locks' "Ulmaro Assistant: non riesco a bloccare la cartella \"$folder\"."

# ---- Options ----

usage='ulmaro-assistant [--minimised] [--size PIXEL] [OPZIONE-X...] | --autostart [on|off] | --help | --version'
expect_rejection() { expect_end 2 "$1" "Ulmaro Assistant: $2; uso: $usage." "${@:3}"; }
expect_rejection 'an unknown option' 'non conosco "--quiz"' --quiz
expect_rejection 'a word' 'non conosco "owl"' -iconic owl
expect_rejection 'an empty word' 'non conosco ""' ''
expect_rejection 'two lines' 'non conosco "a?b"' $'a\nb'
for size in '' 0 15 16385 99999 1e3 -5 0300 '300 ' 9223372036854775808; do
  expect_rejection "size $size" "--size vuole un numero di pixel da 16 a 16384, non \"$size\"" --size "$size"
done
expect_rejection 'no size' '--size vuole un numero di pixel da 16 a 16384, non ""' --size
expect_rejection 'no display' 'a -display manca il valore' -display
expect_rejection 'autostart and more' '--autostart sta da sola' --autostart on --size 300
expect_rejection 'autostart after more' '--autostart sta da sola' --minimised --autostart
expect_rejection 'an unknown word' '--autostart non conosce "yes"' --autostart yes

# expect_options OPTIONS ARGUMENT...: the program gets these, one a line.
expect_options() {
  start "${@:2}"
  [ "$(tail -n +2 "$home/started")" = "$1" ] || fail "${*:2} is passed as '$(tail -n +2 "$home/started")'"
  stop
}
expect_options -iconic --minimised
expect_options $'-geometry\n600x600' --size 600
expect_options $'-geometry\n16384x16384\n-iconic' --size=16384 --minimised
expect_options $'-display\n:1\n-geometry\n+1-1\n-direct\n-indirect\n-gldebug\n-sync\n-iconic' \
  -display :1 -geometry +1-1 -direct -indirect -gldebug -sync -iconic

# These two need nothing, and show nothing but in the terminal.
forget
[ "$(HOME='' ULMARO_DATA=/none "$launcher" --version </dev/null)" = "Ulmaro Assistant $version" ] ||
  fail 'the version is another'
HOME='' ULMARO_DATA=/none "$launcher" --help </dev/null >"$home/help"
for option in --minimised --size --autostart --help --version -display -geometry -iconic -direct -indirect -gldebug -sync
do
  grep -qe "$option" "$home/help" || fail "the help does not tell of $option"
done
[ -z "$(seen shown)" ] || fail 'help and version are notified'

# ---- Starting at login ----

entry=$home/.config/autostart/ulmaro-assistant.desktop
# expect_autostart LINE ARGUMENT...: that is said, and shown; nothing starts.
expect_autostart() {
  local said
  rm -f "$home/started"
  forget
  said=$("$launcher" --autostart "${@:2}" </dev/null 2>&1) || fail "--autostart ${*:2} fails: $said"
  [ "$said" = "$1" ] || fail "--autostart ${*:2} says '$said'"
  expect_seen shown "$1" "--autostart ${*:2}"
  [ ! -e "$home/started" ] || fail "--autostart ${*:2} starts the program"
}
on="Ulmaro Assistant parte all'accesso."
off="Ulmaro Assistant non parte all'accesso."
expect_autostart "$off"
[ ! -e "$home/.config" ] || fail 'the question alone makes folders'
expect_autostart "$off" off
expect_autostart "$on" on
expect_autostart "$on"
[ "$(ls -A "${entry%/*}")" = ulmaro-assistant.desktop ] || fail 'more than the entry is made'
! command -v desktop-file-validate >/dev/null || desktop-file-validate "$entry"
grep -qx "Exec=$launcher --minimised" "$entry" || fail "the entry starts another program"
grep -qx "TryExec=$launcher" "$entry" || fail "the entry does not look for the launcher"
for switch in Hidden=true X-GNOME-Autostart-enabled=false; do
  echo $switch >>"$entry"
  expect_autostart "$off"
  expect_autostart "$on" on
done
expect_autostart "$off" off
[ ! -e "$entry" ] || fail 'the entry stays'
XDG_CONFIG_HOME=$home/settings expect_autostart "$on" on
[ -e "$home/settings/autostart/ulmaro-assistant.desktop" ] || fail 'XDG_CONFIG_HOME is not heard'
# A launcher whose path needs quoting: the letters that a quoted word has to escape, and the per cent sign.
odd="$home/100% \"own\" \$owl\`s\\"
mkdir "$odd"
cp "$launcher" "$odd/owl"
forget
"$odd/owl" --autostart on </dev/null >/dev/null
expect_seen shown "$on" 'an odd path'
grep -qxF "Exec=\"$home/100%% \\\\\"own\\\\\" \\\\\$owl\\\\\`s\\\\\\\\/owl\" --minimised" "$entry" ||
  fail "an odd path is written as $(grep ^Exec= "$entry")"
! command -v desktop-file-validate >/dev/null || desktop-file-validate "$entry"
rm -r "$home/.config"
touch "$home/.config"
expect_end 1 'no folder for the entry' "Ulmaro Assistant: non riesco a scrivere \"$entry\"." --autostart on
rm "$home/.config"
HOME='' expect_end 1 'no home for the entry' \
  "Ulmaro Assistant: non so dove tenere le impostazioni, perche' HOME e' vuota." --autostart on

# ---- What the program says ----

# expect_program KIND TEXT WHAT: what the program says by the script is shown so.
expect_program() {
  forget
  start
  expect_seen "$@"
}
# Without a terminal its own lines are shown, together where they come together; the caller still gets all.
cat >"$scratch/script" <<'SAYS'
cat <<'LINES' >&2
libGL error: no driver
Ulmaro Assistant: a <b> & "c" \n $(touch x) `touch x` 'd'.
Ulmaro Assistant: due.
LINES
SAYS
expect_program shown $'A &lt;b&gt; &amp; "c" \\\\n $(touch x) `touch x` \'d\'.\nDue.' 'two lines'
[ "$(cat "$home/errors")" = $'libGL error: no driver\nUlmaro Assistant: a <b> & "c" \\n $(touch x) `touch x` \'d\'.\nUlmaro Assistant: due.' ] ||
  fail "standard error is changed: $(cat "$home/errors")"
[ "$(tail -n 3 "$scratch/words" | head -n 1)" = 'Ulmaro Assistant' ] || fail 'the notification has another title'
grep -qx -- '--hint=string:desktop-entry:ulmaro-assistant' "$scratch/words" || fail 'the notification has no desktop entry'
[ ! -e "$folder/x" ] || fail 'a text is run as a command'
stop
# What is no text is not shown, and a long text is cut.
printf '%s\n' "{ printf 'Ulmaro Assistant: p\\303\\250 \\377\\001%04096d' 0; printf '\n'; } >&2" >"$scratch/script"
expect_program shown "Pè $(printf %0994d 0)..." 'a long line'
stop
# Many lines: five, and how many more.
echo 'seq -f "Ulmaro Assistant: riga %g." 7 >&2' >"$scratch/script"
expect_program shown $'Riga 1.\nRiga 2.\nRiga 3.\nRiga 4.\nRiga 5.\n(e altre righe: 2)' 'seven lines'
stop
# The last words of a program that ends with them, without a newline.
echo "printf 'Ulmaro Assistant: fine.' >&2; exit 3" >"$scratch/script"
expect_program shown 'Fine.' 'the last words'
status=0
wait "$owl" || status=$?
[ $status = 3 ] || fail "the program's status becomes $status"
owl=
# In a terminal nothing is shown elsewhere, and the program writes to the terminal itself.
echo 'echo "Ulmaro Assistant: nel terminale." >&2; [ -t 2 ] || echo "no terminal" >&2; exit 4' >"$scratch/script"
forget
said=$(in_terminal "$launcher")
[ "$said" = 'Ulmaro Assistant: nel terminale.' ] || fail "in a terminal, the program says '$said'"
[ "$(cat "$scratch/status")" = 4 ] || fail "in a terminal, the program's status becomes another"
sleep 0.5
[ -z "$(seen shown)$(seen message)" ] || fail 'what a terminal shows is notified'

# Without a server for notifications a message is shown; a server that hangs is waited for five seconds.
echo "echo 'Ulmaro Assistant: <b> &.' >&2" >"$scratch/script"
touch "$scratch/no server"
expect_program message '<b> &.' 'no server'
[ -z "$(seen shown)" ] || fail 'it is notified and in a message'
stop
mv "$scratch/no server" "$scratch/hung server"
expect_program message '<b> &.' 'a hung server'
stop
mv "$scratch/hung server" "$scratch/no server"
# While a message waits for its click, the program is never held up, the next lines wait, and the lock ends with it.
touch "$scratch/nobody clicks"
cat >"$scratch/script" <<'SAYS'
seq -f 'driver: a line of a library, which says much, number %g' 3000 >&2
echo 'Ulmaro Assistant: uno.' >&2
sleep 1
seq -f 'driver: a line of a library, which says much, number %g' 3000 >&2
echo 'Ulmaro Assistant: due.' >&2
echo done >"$SCRATCH/said all"
SAYS
expect_program message 'Uno.' 'the first message'
wait_for "$scratch/said all"
sleep 0.5
[ "$(seen message)" = 'Uno.' ] || fail 'a second message comes before the click'
[ "$(grep -c . "$home/errors")" = 6002 ] || fail 'lines are lost'
stop
rm "$scratch/script"
start
stop
rm "$scratch/nobody clicks"
expect_seen message $'Uno.\nDue.' 'the second message'
rm "$scratch/no server"

echo 'The launcher behaves.'
