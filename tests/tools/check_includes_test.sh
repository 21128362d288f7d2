#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
# SPDX-License-Identifier: MIT
#
# Tests tools/check_includes on small trees, each with one mistake in it.
#
# usage: tests/tools/check_includes_test.sh CHECK_INCLUDES
set -euo pipefail
check=$(realpath "$1")

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
tree=$scratch/clean

fail() { echo "FAILED: $1" >&2; exit 1; }
# source_file FILE LINE...: writes a C++ file of the tree: the two SPDX lines and those lines.
source_file() {
  local file=$tree/$1
  shift
  mkdir -p "${file%/*}"
  printf '%s\n' '// SPDX-FileCopyrightText: 2026 Somebody' '// SPDX-License-Identifier: MIT' '' "$@" >"$file"
}
# make_clean_tree: makes a tree that has no mistake, only some things that look like one.
make_clean_tree() {
  source_file engine/text.h '#include <string>' '#include <GL/gl.h>'
  source_file engine/text.cpp '#include "engine/text.h"'
  source_file app/menu.h '#include "engine/text.h"' '// #include "app/frame.h"'
  source_file app/menu.cpp '#include "app/menu.h"' '#include "app/clock.h"'
  source_file app/frame.h
  source_file app/frame.cpp '#include "app/frame.h"' '#include "app/menu.h"' '#include "app/clock.h"'
  source_file app/clock.h
  source_file app/desktop_x11.cpp '#include <GL/glx.h>' '#include <X11/Xlib.h>'
  source_file tests/unit/menu_test.cpp '#include <X11/Xlib.h>' '#include "app/menu.h"'
  source_file build-other/generated.cpp '#include "not/there.h"'
  printf '%s\n' '#!/bin/sh' '# SPDX-FileCopyrightText: 2026 Somebody' '# SPDX-License-Identifier: MIT' >"$tree/run"
  printf '%s\n' '# SPDX-FileCopyrightText: 2026 Somebody' '# SPDX-License-Identifier: MIT' >"$tree/CMakeLists.txt"
  echo 'No source.' >"$tree/README.md"
}
# clean_tree: starts anew with a copy of it.
clean_tree() {
  rm -rf "$scratch/tree"
  cp -r "$scratch/clean" "$scratch/tree"
}
# expect WHAT LINE...: the check ends with status 1 and just those lines; without a line, with 0.
expect() {
  local what=$1 status=0 wanted=0 said
  shift
  [ $# = 0 ] || wanted=1
  said=$("$check" "$tree" 2>&1) || status=$?
  [ "$said" = "$(printf 'check_includes: %s\n' "$@" | sed '/: $/d')" ] || fail "$what: it says '$said'"
  [ "$status" = "$wanted" ] || fail "$what: status $status"
}

make_clean_tree
tree=$scratch/tree
clean_tree
expect 'a clean tree'

source_file app/menu.h '#include "app/frame.h"'
expect 'a cycle of two' 'cycle: app/frame -> app/menu -> app/frame'

# The way back goes through a .cpp file and its header, and through a third module.
clean_tree
source_file app/clock.h '  #  include   "app/frame.h"  // the frame'
source_file app/frame.cpp '#include "app/frame.h"' '#include "app/menu.h"'
expect 'a cycle of three' 'cycle: app/clock -> app/frame -> app/menu -> app/clock'

# Each include on a cycle is in one of the chains.
clean_tree
source_file app/clock.h '#include "app/frame.h"'
expect 'two cycles that share an include' 'cycle: app/clock -> app/frame -> app/clock' \
  'cycle: app/clock -> app/frame -> app/menu -> app/clock'

clean_tree
source_file tests/fakes/one.h '#include "two.h"'
source_file tests/fakes/two.h '#include <tests/fakes/one.h>'
expect 'a cycle in another folder, by other spellings' 'cycle: tests/fakes/one -> tests/fakes/two -> tests/fakes/one'

for folder in app calendar quiz tests; do
  clean_tree
  source_file "$folder/owl.h"
  source_file engine/text.cpp "#include \"$folder/owl.h\""
  expect "the engine over $folder" "engine/text.cpp: the engine includes \"$folder/owl.h\""
done

for folder in app quiz tests; do
  clean_tree
  source_file "$folder/owl.h"
  source_file agenda/listing.cpp "#include \"$folder/owl.h\""
  expect "the agenda over $folder" "agenda/listing.cpp: the agenda includes \"$folder/owl.h\""
done
clean_tree
source_file calendar/store.h
source_file agenda/listing.h
source_file agenda/listing.cpp '#include "agenda/listing.h"' '#include "calendar/store.h"' '#include "engine/text.h"'
expect 'the agenda over calendar and engine'

for header in X11/Xlib.h X11/extensions/XTest.h GL/glx.h GL/glxext.h xcb/xcb.h; do
  for folder in agenda app calendar quiz engine; do
    clean_tree
    source_file "$folder/window.h" "#include <$header>"
    expect "$header in $folder" "$folder/window.h: includes <$header>; only app/desktop_x11.cpp may"
  done
done

clean_tree
source_file app/owl.cpp '#include "app/owls.h"'
expect 'a header that is not there' 'app/owl.cpp: includes "app/owls.h", which is not in the tree'

# The two lines are missing, incomplete, too late, or of another language.
spdx_is_missing() { expect "$1 in $2" "$2: does not begin with the two SPDX lines"; }
clean_tree
echo '#pragma once' >"$tree/app/clock.h"
spdx_is_missing 'no SPDX line' app/clock.h
: >"$tree/app/clock.h"
spdx_is_missing 'nothing' app/clock.h
echo '// SPDX-FileCopyrightText: 2026 Somebody' >"$tree/app/clock.h"
spdx_is_missing 'no licence' app/clock.h
clean_tree
printf '%s\n' '#!/bin/sh' '# SPDX-License-Identifier: MIT' >"$tree/run"
spdx_is_missing 'no owner' run
clean_tree
mkdir "$tree/.ci"
printf '%s\n' '#!/usr/bin/env python3' '' '# SPDX-FileCopyrightText: 2026 Somebody' '# SPDX-License-Identifier: MIT' \
  >"$tree/.ci/run"
spdx_is_missing 'lines that come late' .ci/run
clean_tree
sed 's|^#|//|' "$tree/CMakeLists.txt" >"$tree/install.cmake"
spdx_is_missing "another language's comment" install.cmake
clean_tree
echo 'project(owl)' >"$tree/CMakeLists.txt"
spdx_is_missing 'no SPDX line' CMakeLists.txt

# A folder without sources is not a clean tree.
rm -rf "$tree"
mkdir "$tree"
expect 'an empty folder' "$tree: no C++ source"
echo 'The includes are checked.'
