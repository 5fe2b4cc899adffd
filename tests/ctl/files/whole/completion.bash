# Completion for bash: source it, or put it into /usr/share/bash-completion/completions/tavrinctl
_tavrinctl_words() {
    local words=
    case $1 in
    esac
    printf '%s' "$words"
}
_tavrinctl() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} verb= words
    [ "$COMP_CWORD" -eq 1 ] || verb=${COMP_WORDS[1]}
    words=$(_tavrinctl_words "$verb${verb:+ $before}")
    [ -n "$words" ] || words=$(_tavrinctl_words "$verb")
    COMPREPLY=($(compgen -W "$words" -- "$word"))
}
complete -o default -F _tavrinctl tavrinctl
