# Prints the mutants of C++ files, one per line: FILE, line number, the line before, the line after, separated by tabs.
# Set "root" to the folder that the files are below.
#
# Strings and comments are blanked before a rule looks for its tokens. Leading and trailing blanks of lines are cut.

function emit(at, length_, text,    new) {
    new = substr(line, 1, at - 1) text substr(line, at + length_)
    printf "%s\t%d\t%s\t%s\n", name, FNR, line, new
}

# Every place where the expression matches, replaced by `text`.
function swap(expression, text,    from, at) {
    from = 1
    while (match(substr(code, from), expression)) {
        at = from + RSTART - 1
        emit(at, RLENGTH, text)
        from = at + RLENGTH
    }
}

# The same for a whole word.
function word(old, text,    from, at) {
    from = 1
    while ((at = index(substr(code, from), old)) > 0) {
        at += from - 1
        from = at + length(old)
        if (substr(code, at - 1, at > 1) !~ /[A-Za-z0-9_]/ && substr(code, from, 1) !~ /[A-Za-z0-9_]/)
            emit(at, length(old), text)
    }
}

function negations(    at) {
    for (at = 1; at < length(code); at++)
        if (substr(code, at, 2) ~ /^![A-Za-z_(]/) emit(at, 1, "")
}

# Strings become quotes around \001, characters and comments blanks.
function blank(text,    i, c, result, inside) {
    inside = ""
    for (i = 1; i <= length(text); i++) {
        c = substr(text, i, 1)
        if (inside != "") {
            if (c == "\\") {
                result = result "\001\001"
                i++
            } else if (c == inside) {
                result = result c
                inside = ""
            } else {
                result = result "\001"
            }
        } else if (c == "/" && substr(text, i, 2) == "//") {
            break
        } else {
            # An apostrophe between digits separates them.
            if (c == "\"" || (c == "'" && substr(text, i - 1, 1) !~ /[0-9A-Fa-f]/)) inside = c
            result = result c
        }
    }
    sub(/ +$/, "", result)
    return result
}

function numbers(    from, at, digits, before) {
    from = 1
    while (match(substr(code, from), /[0-9][0-9A-Za-z']*/)) {
        at = from + RSTART - 1
        digits = substr(code, at, RLENGTH)
        before = substr(code, at - 1, 1)
        from = at + RLENGTH
        if (before ~ /[A-Za-z0-9_.]/ && at > 1) continue
        if (digits ~ /^[0-9]+$/) emit(at, length(digits), (digits + 1) "")
        else if (digits ~ /^[0-9]+U$/) emit(at, length(digits), (digits + 1) "U")
        else if (digits ~ /^0x[0-9A-Fa-f]+U?$/) emit(at, length(digits), "(" digits " ^ 1)")
    }
}

function strings(    from, at) {
    from = 1
    while (match(substr(code, from), /"\001*"/)) {
        at = from + RSTART - 1
        emit(at, 1, "\"~")
        from = at + RLENGTH
    }
}

FNR == 1 {
    name = FILENAME
    if (index(name, root "/") == 1) name = substr(name, length(root) + 2)
    ended = 1
    directive = 0
}

{
    line = $0
    gsub(/\t/, " ", line)
    indent = match(line, /[^ ]/) - 1
    gsub(/^ +| +$/, "", line)
    code = blank(line)
    was_directive = directive
    directive = (code ~ /^#/ || was_directive) && code ~ /\\$/
    if (code == "" || code ~ /^#/ || was_directive) next
    starts = ended
    ended = code ~ /[;{}:]$/
    if (code ~ /^(static_assert|using|namespace|template|typedef|extern)/) next

    # Comparisons, logic, arithmetic, bits.
    swap(" == ", " != ")
    swap(" != ", " == ")
    swap(" < ", " <= ")
    swap(" <= ", " < ")
    swap(" > ", " >= ")
    swap(" >= ", " > ")
    swap(" && ", " || ")
    swap(" [|][|] ", " && ")
    swap(" [+] ", " - ")
    swap(" - ", " + ")
    swap(" [+]= ", " -= ")
    swap(" & ", " | ")
    swap(" [|] ", " & ")
    swap(" << ", " >> ")
    swap("~", "")
    negations()

    # Constants.
    word("true", "false")
    word("false", "true")
    # What a variable starts with is left out: almost always a call stores its result there before anything reads it.
    if (code !~ /^[A-Za-z_:0-9]+ [A-Za-z0-9_]*[A-Za-z0-9] = [0-9]+;$/) numbers()
    strings()

    # What a function returns, and where it goes.
    word("kDone", "kFailed")
    word("kFailed", "kDone")
    if (code ~ /^break;$/) emit(1, length(line), ";")
    if (code ~ /^continue;$/) emit(1, length(line), "break;")
    if (code ~ /^(\} else )?if \(.*\) \{$/ && code !~ /[=<>!]=| [<>] |&&|[|][|]|\(!/) {
        at = index(code, "if (") + 4
        condition = substr(line, at, length(code) - at - 2)
        emit(at, length(condition), "!(" condition ")")
    }

    # A statement that is not executed. Declarations with a value are left out: what follows needs them.
    if (starts && indent >= 4 && code ~ /^[A-Za-z_*(+-].*[(=+-]/ &&
        code !~ /^(return|if|for|while|do|switch|case|default|else|struct|class|enum|static|constexpr|inline|public|private|protected|explicit|virtual|friend|break|continue|operator)([^A-Za-z0-9_]|$)/ &&
        code !~ /^(const )?[A-Za-z0-9_:<>*, ]+[&*]? [&*]?[A-Za-z0-9_]+ = / && code !~ /[{:]$/) {
        emit(1, 0, "if (false) ")
    }
}
