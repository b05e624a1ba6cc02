# Bash completion of cimd and cimd-passwd: the options in their --help, and what stands for the argument of each there.
_cimd() {
    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} help argument
    # --option=value is three words to bash.
    if [ "$current" = = ]; then
        current=
    elif [ "$before" = = ]; then
        before=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    help=$("${COMP_WORDS[0]}" --help 2>/dev/null)
    argument=$(sed -nE "s/^ +$before ([A-Z]+)\$/\1/p" <<<"$help")
    case $argument in
    FILE | PATH) mapfile -t COMPREPLY < <(compgen -f -- "$current") ;;
    DIRECTORY) mapfile -t COMPREPLY < <(compgen -d -- "$current") ;;
    LEVEL) mapfile -t COMPREPLY < <(compgen -W "error warning info debug" -- "$current") ;;
    ?*) COMPREPLY=() ;; # only the user knows it
    *)
        if [ "${COMP_WORDS[0]##*/}" = cimd-passwd ] && [[ $current != -* ]]; then
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
        else
            mapfile -t COMPREPLY < <(compgen -W "$(grep -oE '^ +(-[A-Za-z], )?--[a-z-]+' <<<"$help")" -- "$current")
        fi
        ;;
    esac
}
complete -o filenames -F _cimd cimd cimd-passwd
