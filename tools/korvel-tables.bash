# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# Completes the commands of korvel-tables, their options, and leaves files, and the
# quotes around them, to the shell.

# Prints the options of a command.
_korvel_tables_options() {
  case $1 in
    check) echo --dates --help ;;
    find) echo --column --date --dates --all --help ;;
    search) echo --column --ignore-case --all --help ;;
    set) echo --line --help ;;
    insert) echo --after --help ;;
    delete) echo --line --all --help ;;
    repair) echo --title --version --help ;;
    import) echo --title --version --encoding --delimiter --header --replace --help ;;
    export) echo --format --output --header --delimiter --help ;;
    *) echo --help ;;
  esac
}

_korvel_tables() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} words=''
  COMPREPLY=()
  if [ "$COMP_CWORD" -eq 1 ]; then
    words='check show list find search set insert delete backup repair diff import export
      --help --version'
  elif [[ $word == -* ]]; then
    words=$(_korvel_tables_options "${COMP_WORDS[1]}")
  else
    case $before in
      --format) words='csv sqlite postgres' ;;
      --encoding) words='utf-8 cp1252' ;;
      --column | --date | --dates | --line | --after | --title | --version | --delimiter | \
        --replace) return ;;
      *)
        compopt -o default 2>/dev/null
        return
        ;;
    esac
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}

complete -F _korvel_tables korvel-tables
