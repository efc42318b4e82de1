# Completion of the command line of kivora for bash.
_kivora() {
    local word=${COMP_WORDS[COMP_CWORD]}
    local first=${COMP_WORDS[1]}
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ] && [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W '--receive --help --version' -- "$word")
    elif [ "$COMP_CWORD" -gt 1 ] && [ "$first" = --receive ]; then
        [ "$COMP_CWORD" -eq 2 ] && mapfile -t COMPREPLY < <(compgen -W 'all known none' -- "$word")
    elif [ "$COMP_CWORD" -gt 1 ] && [[ $first == --help || $first == --version ]]; then
        :
    else
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -d -- "$word"; compgen -f -X '!*.kvr' -- "$word")
    fi
}
complete -F _kivora kivora
