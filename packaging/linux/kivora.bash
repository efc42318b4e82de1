# Completion of the command line of kivora for bash.
_kivora() {
    local word=${COMP_WORDS[COMP_CWORD]}
    local command=${COMP_WORDS[1]}
    local commands='--new --find --toggle --list --export --import --print --receive --help --version'
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        case $word in
            -*) mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$word") ;;
            *) _kivora_files ;;
        esac
        return
    fi
    case $command in
        --receive)
            [ "$COMP_CWORD" -gt 2 ] || mapfile -t COMPREPLY < <(compgen -W 'all known none' -- "$word")
            ;;
        --export) [ "$COMP_CWORD" -gt 2 ] || _kivora_files ;;
        --new | --find | --toggle | --list | --print | --help | --version) ;;
        *) _kivora_files ;;
    esac
}
_kivora_files() {
    compopt -o filenames
    mapfile -t COMPREPLY < <(
        compgen -d -- "$word"
        compgen -f -X '!*.kvr' -- "$word"
        compgen -f -X '!*.txt' -- "$word"
    )
}
complete -F _kivora kivora
