# SPDX-License-Identifier: MIT
# bash completion for quendar-change

# prints what the shell may offer; nothing stands for the names of files
_quendar_change_words()
{
    local command=$1 previous=$2 current=$3
    local import='--apply-all --apply-limit --check --check-for --json --no-reboot'
    case $previous in
        --confirm-within | --check-for | --apply-limit) echo 30s 90s 10min 1h ;;
        --output | --with-document) ;;
        *)
            case $command:$current in
                plan:-*) echo --json --show-secrets --with-document ;;
                redact:-*) echo --json --output ;;
                apply:-*) echo "$import" ;;
                try:-*) echo "--confirm-within --detach $import" ;;
                revert:-*) echo --force --forget --json --no-reboot ;;
                status:-*) echo --all --json ;;
                verify:-* | confirm:-* | resume:*) echo --json ;;
                confirm:* | revert:*) _quendar_change_ids ;;
                status:*) _quendar_change_ids --all ;;
            esac
            ;;
    esac
}

_quendar_change_ids()
{
    quendar-change status "$@" --json 2>/dev/null | grep -o '"id": *"[^"]*"' | cut -d '"' -f 4
}

_quendar_change()
{
    local current=$2 previous=$3 words
    if [[ $COMP_CWORD == 1 ]]; then
        words='apply confirm plan redact resume revert status try verify --help --version'
    elif [[ $previous == --check ]]; then
        mapfile -t COMPREPLY < <(compgen -c -- "$current")
        return
    else
        words=$(_quendar_change_words "${COMP_WORDS[1]}" "$previous" "$current")
    fi
    if [[ $words ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    else
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
} && complete -F _quendar_change quendar-change
