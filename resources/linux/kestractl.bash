# Bash completion for kestractl: its commands, then the options of each.
_kestractl()
{
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]}
    local commands="convert import export detect general monitor sim print read send"
    local command="" word
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        case " $commands " in *" $word "*) command=$word; break ;; esac
    done
    case $prev in
        --dir|--record) COMPREPLY=($(compgen -d -- "$cur")); return ;;
        --model) COMPREPLY=($(compgen -W "BC250D BC296D BC785D BC796D UBC3300" -- "$cur")); return ;;
        --banks) COMPREPLY=($(compgen -W "all 1 2 3 4 5 6 7 8 9 10" -- "$cur")); return ;;
        --data) COMPREPLY=($(compgen -W "all channels ids trunk search channels,ids,trunk,search" -- "$cur")); return ;;
    esac
    if [ -z "$command" ]; then
        COMPREPLY=($(compgen -W "$commands --help --version --quiet" -- "$cur"))
        return
    fi
    local options="--help --quiet"
    case $command in
        convert) options+=" --model --dir" ;;
        import) options+=" --format --bank --base --dir" ;;
        export) options+=" --format --bank --dir" ;;
        detect) options+=" --dir" ;;
        general) options+=" --port --dir --set" ;;
        monitor) options+=" --port --duration --dir --log --record" ;;
        sim) options+=" --model --link --load --dump --log --latency --faults --baud --activity --traffic" ;;
        print) options+=" --report --bank --model --date" ;;
        read) options+=" --port --banks --data --merge --no-verify --base --dir" ;;
        send) options+=" --port --banks --data --dir" ;;
    esac
    if [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W "$options" -- "$cur"))
    else
        COMPREPLY=($(compgen -f -- "$cur"))
    fi
}
complete -o filenames -F _kestractl kestractl
