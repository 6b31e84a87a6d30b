# SPDX-License-Identifier: MIT
# bash completion for quendar-change

_quendar_change()
{
    local current=$2 previous=$3 words
    case $COMP_CWORD:${COMP_WORDS[1]} in
        1:*) words='plan verify redact --help --version' ;;
        *:plan) words='--json --show-secrets --with-document' ;;
        *:verify) words='--json' ;;
        *:redact) words='--json --output' ;;
        *) return ;;
    esac
    if [[ $COMP_CWORD == 1 || ($current == -* && $previous != --output && $previous != --with-document) ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    else
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
} && complete -F _quendar_change quendar-change
