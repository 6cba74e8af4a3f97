# Completion of filterctl for bash.

_filterctl() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} words=
    # Bash takes --stage=2 for three words.
    if [[ $current == = ]]; then
        current=
    elif [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi

    case $COMP_CWORD,$previous,${COMP_WORDS[1]},$current in
    1,*) words='import show check diff json stats --help' ;;
    *,--stage,*) words='0 1 2 3' ;;
    *,--type,*) words='0 1 2 3 4 5 6 7 8 9' ;;
    *,--action,*) words='permit deny' ;;
    *,--group,* | *,--priority,*) ;;
    *,-o,*) words=files ;;
    *,import,-*) words='-o --group --priority --stage --type --action --help' ;;
    *,check,-*) words='--group --priority --stage --type --action --help' ;;
    *,diff,-*) words='-o -q --brief --content --help' ;;
    *,json,-*) words='-o --compact --help' ;;
    *,show,-* | *,stats,-*) words='-o --help' ;;
    *) words=files ;;
    esac

    if [[ $words == files ]]; then
        compopt -o filenames 2>/dev/null # an error outside of a completion
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    fi
} && complete -F _filterctl filterctl
