# Bash completion of the programs whose --help tells all: their options, and what stands for the argument of each there.
_of_help() {
    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} help argument
    # --option=value is three words to bash.
    if [ "$current" = = ]; then
        current=
    elif [ "$before" = = ]; then
        before=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    help=$("${COMP_WORDS[0]}" --help 2>/dev/null)
    [[ $before != --* ]] || argument=$(sed -nE "s/^ +$before +([A-Z]+)( .*)?\$/\1/p" <<<"$help")
    case $argument in
    FILE | PATH) mapfile -t COMPREPLY < <(compgen -f -- "$current") ;;
    DIR | DIRECTORY) mapfile -t COMPREPLY < <(compgen -d -- "$current") ;;
    LEVEL) mapfile -t COMPREPLY < <(compgen -W "error warning info debug" -- "$current") ;;
    ?*) COMPREPLY=() ;; # only the user knows it
    *)
        if [[ $current == -* || ${COMP_WORDS[0]##*/} == cimd ]]; then
            mapfile -t COMPREPLY < <(compgen -W "$(grep -oE '^ +(-[A-Za-z], )?--[a-z-]+' <<<"$help")" -- "$current")
        elif [[ $help =~ "  {"([a-z,]+)"}" ]]; then # one of these words is wanted
            mapfile -t COMPREPLY < <(compgen -W "${BASH_REMATCH[1]//,/ }" -- "$current")
        else
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
        fi
        ;;
    esac
}
complete -o filenames -F _of_help cimd cimd-passwd simgen genclass vrax-host-files
