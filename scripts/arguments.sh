# The arguments of ./tavro, which sources this file. What a command accepts is read from its help text,
# help/COMMAND.txt: its Usage line and its list of options.

# How the user called ./tavro, quoted so that printed commands can be pasted.
self=$0
[[ $self = */* ]] || self=./$self # called as: bash tavro
[[ $self =~ ^[A-Za-z0-9_./+,:@%=-]+$ ]] || self="'${self//\'/\'\\\'\'}'"

commands() {
    local file
    for file in "$root"/help/*.txt; do
        file=${file##*/}
        [ "$file" = tavro.txt ] || printf '%s\n' "${file%.txt}"
    done
}
# Except the presets that end in -tests, which add tests to the same build folder.
presets() { sed -n 's/.*"name": "\([a-z]*\)", "configurePreset".*/\1/p' "$root/CMakePresets.json"; }

# Prints the edit distance of two words; a swap of adjacent letters counts as one edit.
distance() {
    local a=$1 b=$2 i j cost best
    local -A d
    for ((i = 0; i <= ${#a}; i++)); do d[$i,0]=$i; done
    for ((j = 0; j <= ${#b}; j++)); do d[0,$j]=$j; done
    for ((i = 1; i <= ${#a}; i++)); do
        for ((j = 1; j <= ${#b}; j++)); do
            cost=1
            [ "${a:i-1:1}" != "${b:j-1:1}" ] || cost=0
            best=$((d[$((i - 1)),$((j - 1))] + cost))
            ((d[$((i - 1)),$j] + 1 >= best)) || best=$((d[$((i - 1)),$j] + 1))
            ((d[$i,$((j - 1))] + 1 >= best)) || best=$((d[$i,$((j - 1))] + 1))
            if ((i > 1 && j > 1)) && [ "${a:i-2:2}" = "${b:j-1:1}${b:j-2:1}" ]; then
                ((d[$((i - 2)),$((j - 2))] + 1 >= best)) || best=$((d[$((i - 2)),$((j - 2))] + 1))
            fi
            d[$i,$j]=$best
        done
    done
    printf '%s' "${d[${#a},${#b}]}"
}

among() { # WORD CANDIDATE...
    local candidate
    for candidate in "${@:2}"; do
        [ "$candidate" != "$1" ] || return 0
    done
    return 1
}

# Prints "; did you mean 'X'?" if a candidate is close to the word.
suggestion() { # WORD CANDIDATE...
    local word=${1:0:40} bare candidate found='' least=3 letters
    shift
    bare=${word##-}
    bare=${bare#-}
    for candidate in "$@"; do
        letters=$(distance "$bare" "${candidate#--}")
        # An abbreviation is close, too.
        if [ ${#bare} -ge 2 ] && [[ ${candidate#--} = "$bare"* ]]; then letters=0; fi
        if ((letters < least && letters * 3 <= ${#bare} + 1)); then
            least=$letters
            found=$candidate
        fi
    done
    [ -z "$found" ] || printf "; did you mean '%s'?" "$found"
}

# Reports wrong usage and exits.
wrong() {
    local text=$*
    say "tavro: ${text//[[:cntrl:]]/·}"
    say "See: $self ${command:+$command }--help"
    usage_is_wrong=yes
    exit 2
}

help() { # [COMMAND]
    cat "$root/help/${1:-tavro}.txt" || fail "cannot print the help; the reason is above"
    exit 0
}

# Reads a command's options (names, values, short forms) and number of arguments from its help text. The value of an
# optional one, as in --color[=WHEN], begins with '?'.
read_usage() { # COMMAND
    local line usage='' in_usage=yes word
    local option='^  (-([A-Za-z]), |    )(--[A-Za-z][A-Za-z0-9_-]*)((\[?)=([^ ]+))?( |$)'
    while IFS= read -r line; do
        if [[ $line =~ $option ]]; then
            takes[${BASH_REMATCH[3]}]=${BASH_REMATCH[5]:+?}${BASH_REMATCH[6]}
            [ -z "${BASH_REMATCH[2]}" ] || short[-${BASH_REMATCH[2]}]=${BASH_REMATCH[3]}
        fi
        [[ $line = Usage:* || $line = ' '* ]] || in_usage=no
        [ $in_usage = no ] || usage+=" $line"
    done <"$root/help/$1.txt"
    while read -r word; do
        [[ ! $word =~ ^[[\(]*- ]] || continue # an option
        [[ $word = \[* ]] || needed+=("$word")
        [[ $word != *... && $word != *...] ]] || unlimited=yes
        [[ $word != PROGRAM && $word != COMMAND ]] || passes_on=yes
        allowed=$((allowed + 1))
    done < <(usage_words "${usage#*" $1"}")
}

# Prints the words of a usage line, one per line. A group in brackets or parentheses is one word.
usage_words() { # LINE
    local rest=$1 word='' depth=0 part
    while [ -n "$rest" ]; do
        part=${rest%%[][() ]*}
        word+=$part
        rest=${rest:${#part}}
        case ${rest:0:1} in
        [[\(]) depth=$((depth + 1)) ;;
        []\)]) depth=$((depth - 1)) ;;
        esac
        if [[ ($rest = ' '* || -z $rest) && $depth = 0 ]]; then
            [ -z "$word" ] || printf '%s\n' "$word"
            word=
        else
            word+=${rest:0:1}
        fi
        rest=${rest:1}
    done
    [ -z "$word" ] || printf '%s\n' "$word"
}

# Splits a command's words into "options", each as NAME or NAME=VALUE, and "arguments". Exits on wrong usage. The words
# after the argument PROGRAM or COMMAND are arguments of that program or command, whatever they look like.
parse() { # WORD...
    local word name value
    local -A takes=([--help]='') short=([-h]=--help)
    local needed=() allowed=0 unlimited=no passes_on=no
    read_usage "$command"
    for word in "$@"; do
        case $word in
        --) break ;;
        -h | --help) help "$command" ;;
        [!-]*) [ $passes_on = no ] || break ;;
        esac
    done
    while [ $# -gt 0 ]; do
        word=$1 value=
        if [ $passes_on = yes ] && [ ${#arguments[@]} -gt 0 ]; then
            arguments+=("$@")
            break
        fi
        shift
        case $word in
        --)
            arguments+=("$@")
            break
            ;;
        - | -[0-9]* | [!-]* | '') # a file or a number
            arguments+=("$word")
            continue
            ;;
        -h | --help) help "$command" ;;
        --*=*)
            name=${word%%=*}
            value=${word#*=}
            ;;
        --*) name=$word ;;
        *)
            name=${short[${word:0:2}]:-}
            value=${word:2}
            value=${value#=}
            [ -n "$name" ] || name=${word%%=*}
            ;;
        esac
        [ -n "${takes[$name]+known}" ] ||
            wrong "$command: unknown option '$name'$(suggestion "$name" "${!takes[@]}")"
        if [ -z "${takes[$name]}" ]; then
            [[ $word != *=* && ($word = --* || ${#word} = 2) ]] || wrong "$command: option '$name' takes no value: '$word'"
            options+=("$name")
            continue
        fi
        if [[ $word != *=* && ($word = --* || ${#word} = 2) ]]; then
            if [[ ${takes[$name]} = '?'* ]]; then
                options+=("$name")
                continue
            fi
            [[ $# -gt 0 && ($1 != -* || $1 = - || $1 = -[0-9]*) ]] ||
                wrong "$command: option '$name' needs a value: $name=${takes[$name]}"
            value=$1
            shift
        fi
        options+=("$name=$value")
    done
    if [ ${#arguments[@]} -lt ${#needed[@]} ]; then
        wrong "$command: missing argument ${needed[${#arguments[@]}]}"
    elif [ $unlimited = no ] && [ ${#arguments[@]} -gt "$allowed" ]; then
        word=${arguments[$allowed]}
        wrong "$command: unexpected argument '$word'$(suggestion "$word" "${!takes[@]}")"
    fi
}

# Sets "preset" to the command's argument, by default "host".
chosen_preset() {
    preset=${arguments[0]:-host}
    local known
    mapfile -t known < <(presets)
    among "$preset" "${known[@]}" || wrong "$command: unknown preset '$preset'$(suggestion "$preset" "${known[@]}")"
}

version() {
    sed -n 's/^project(.* VERSION \([0-9.]*\).*/tavro \1/p' "$root/CMakeLists.txt" ||
        fail "cannot print the version; the reason is above"
    exit 0
}
