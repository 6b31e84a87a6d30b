# SPDX-License-Identifier: MIT
# bash completion for quendarsettings

_quendarsettings()
{
    local current=$2 previous=$3
    case $previous in
        -settings)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            ;;
        -get | -set)
            mapfile -t COMPREPLY < <(compgen -W 'all' -- "$current")
            ;;
        *)
            mapfile -t COMPREPLY < <(compgen -W '-settings -get -set -noreboot' -- "$current")
            ;;
    esac
} && complete -F _quendarsettings quendarsettings
