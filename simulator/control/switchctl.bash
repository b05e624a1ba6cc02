# Bash completion of switchctl: the words that its table of commands has next.
_switchctl() {
    local words=() word i
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]}
        if [ "$word" = --socket ]; then
            ((++i))
        else
            words+=("$word")
        fi
    done
    local current=${COMP_WORDS[COMP_CWORD]}
    if [ "${COMP_WORDS[COMP_CWORD - 1]}" = --socket ]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return
    fi
    # A word in capitals stands for a value, which only the user knows.
    mapfile -t COMPREPLY < <(compgen -W "$(switchctl --complete "${words[@]}" 2>/dev/null | grep -v '^[A-Z]')" -- "$current")
}
complete -F _switchctl switchctl
