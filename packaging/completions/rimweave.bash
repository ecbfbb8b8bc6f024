# bash completion of rimkit, rimweave and the tools beside it. Verbs and switches are asked from the program whose line is
# completed, so they are those of the version that is installed.

# Prints a line for each switch that a help text lists at the head of a line, "-opath DIR"; or, for a program that answers
# with a usage line alone, for each that stands there.
_rimweave_switches() {
    local text
    text=$("$@" 2>&1 </dev/null)
    case $text in
        "ERROR: usage: "*) grep -oE -- '-[a-z][a-z_]*( [A-Z]+)?' <<<"$text" ;;
        *) sed -nE 's/^  (--?[A-Za-z_][A-Za-z_-]*)(( [A-Z<][^ ]*)?).*/\1\2/p' <<<"$text" ;;
    esac
}

_rimweave_verbs() { "$1" --help 2>/dev/null | sed -nE 's/^  ([a-z]+)  .*/\1/p'; }

_rimweave() {
    local program=$1 word=$2 before=$3 name=${1##*/} lines value
    local designs='v|bsc'
    COMPREPLY=()
    case $name in
        rimkit)
            if [ "$COMP_CWORD" = 1 ]; then
                mapfile -t COMPREPLY < <(compgen -W "$(_rimweave_verbs "$program") --help --version" -- "$word")
                return
            fi
            lines=$(_rimweave_switches "$program" "${COMP_WORDS[1]}" --help) ;;
        rimweave) lines=$(_rimweave_switches "$program" -help) designs=bsc ;;
        kalmverin) lines=$(_rimweave_switches "$program" -help) ;;
        *) lines=$(_rimweave_switches "$program") ;;
    esac
    if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$(cut -d' ' -f1 <<<"$lines")" -- "$word")
        return
    fi
    # The value of the switch before: a folder, a file, or a word that nobody can guess.
    value=$(sed -nE "s/^$before <?([A-Za-z]+).*/\1/p" <<<"$lines")
    compopt -o filenames 2>/dev/null
    case $value in
        DIR | dir | D) mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
        "" | FILE | OUT)
            mapfile -t COMPREPLY < <(compgen -f -- "$word")
            # A design is named without the ending of its files.
            if [ -z "$value" ] && [[ $name == rim* ]]; then
                mapfile -t COMPREPLY < <({
                    compgen -d -- "$word"
                    compgen -f -- "$word" | sed -nE "s/\.($designs)\$//p"
                } | sort -u)
            fi ;;
    esac
}

complete -F _rimweave rimkit rimweave kalmverin kalmedit kalmlist kalmflat
