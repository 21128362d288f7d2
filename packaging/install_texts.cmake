# SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
# SPDX-License-Identifier: MIT

# Installs the texts that name the folders of the installation: the launcher and the manual pages. It runs while the project
# is installed, because only then the prefix is sure.
#
# set before: source (this folder), scratch (a folder to write in), program (the program, relative to the prefix)
cmake_policy(VERSION 3.25)
set(prefix ${CMAKE_INSTALL_PREFIX})

# Installs packaging/FROM as the file `to`, relative to the prefix, after filling in the folders; `EXECUTABLE` as a
# further argument lets it be run.
function(install_text from to)
  cmake_path(GET to PARENT_PATH folder)
  cmake_path(GET to FILENAME name)
  set(made ${scratch}/${to})
  file(READ ${source}/${from} text)
  string(REPLACE ":-/usr/" ":-${prefix}/" text "${text}")
  string(REPLACE "@DATA@" "${prefix}/share/ulmaro-assistant" text "${text}")
  string(REPLACE "@GUIDE@" "${prefix}/share/doc/ulmaro-assistant/guida" text "${text}")
  file(WRITE ${made} "${text}")
  set(permissions OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
  if(EXECUTABLE IN_LIST ARGN)
    list(APPEND permissions OWNER_EXECUTE GROUP_EXECUTE WORLD_EXECUTE)
  endif()
  file(INSTALL ${made} DESTINATION ${prefix}/${folder} PERMISSIONS ${permissions})
endfunction()

install_text(ulmaro-assistant bin/ulmaro-assistant EXECUTABLE)
install_text(man/ulmaro-assistant.1 share/man/man1/ulmaro-assistant.1)
install_text(man/it/ulmaro-assistant.1 share/man/it/man1/ulmaro-assistant.1)
install_text(../agenda/man/ulmaro-agenda.1 share/man/man1/ulmaro-agenda.1)
install_text(../agenda/man/it/ulmaro-agenda.1 share/man/it/man1/ulmaro-agenda.1)

# The guide's address is inside the program since it was compiled, unless that is a page of the web.
set(guide file://${prefix}/share/doc/ulmaro-assistant/guida/index.html)
file(STRINGS $ENV{DESTDIR}${prefix}/${program} strings REGEX "file://")
string(REGEX MATCH "file://[^;]*" address "${strings}")
if(address AND NOT address STREQUAL guide)
  message(NOTICE "The menu's web-site item opens '${address}'.\n"
                 "For the guide as installed here, configure with -DULMARO_WEB_SITE=${guide} and build again.")
endif()
