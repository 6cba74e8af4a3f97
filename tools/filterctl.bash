# Completion of filterctl for bash.

_filterctl() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} words=
    # Bash takes --stage=2 for three words.
    if [[ $current == = ]]; then
        current=
    elif [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi

    local form='--from --allow-empty -h --help'
    local list='--group --priority --stage --type --action'
    case $COMP_CWORD,$previous,${COMP_WORDS[1]},$current in
    1,*) words='import list show json stats check diff add delete merge help -h --help --version' ;;
    *,help,help,*) words='import list show json stats check diff add delete merge' ;;
    *,--from,*) words='bytes rules list json' ;;
    *,--stage,*) words='0 1 2 3' ;;
    *,--type,*) words='0 1 2 3 4 5 6 7 8 9' ;;
    *,--action,*) words='permit deny' ;;
    *,--group,* | *,--priority,* | *,--id,* | *,--match,*) ;;
    *,-o,*) words=files ;;
    *,import,-*) words="-o $list $form" ;;
    *,list,-*) words="-o --id --action --match $form" ;;
    *,check,-*) words="$list $form" ;;
    *,diff,-*) words="-o -q --brief --content $form" ;;
    *,json,-*) words="-o --compact $form" ;;
    *,show,-* | *,stats,-*) words="-o $form" ;;
    *,add,-* | *,delete,-*) words=$form ;;
    *,merge,-*) words="-o --renumber --above --below $form" ;;
    *) words=files ;;
    esac

    if [[ $words == files ]]; then
        compopt -o filenames 2>/dev/null # an error outside of a completion
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    fi
} && complete -F _filterctl filterctl
