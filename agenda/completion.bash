# shellcheck shell=bash
# SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
# SPDX-License-Identifier: MIT
#
# Completion of ulmaro-agenda for bash.

_ulmaro_agenda() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} words=''
  COMPREPLY=()
  case $before in --da | --a | --giorno-intero) return ;; esac
  if [ "$COMP_CWORD" = 1 ]; then
    words='elenco esporta importa controlla --help --version'
  else
    case ${COMP_WORDS[1]} in
      elenco) words='--da --a --json' ;;
      importa) words='--prova --giorno-intero' ;;
    esac
  fi
  if [[ $COMP_CWORD -gt 1 && $word != -* && ${COMP_WORDS[1]} == @(importa|esporta) ]]; then
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
    return
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}
complete -F _ulmaro_agenda ulmaro-agenda
