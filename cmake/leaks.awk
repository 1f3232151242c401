#!/usr/bin/awk -f
# Prints the errors and leaks of a sanitizer's report that are ours, and exits with 1 if there are any. See sanitized.sh.

BEGIN {
    while ((getline line < deliberate) > 0) {
        if (line !~ /^(#|$)/) {
            split(line, word)
            ++rules
            keeper[rules] = "[ :]" word[1] "[(<]"
            caller[rules] = "[ :]" word[2] "[(< ]"
            file[rules] = word[3]
        }
    }
    if (!rules) {
        print "no deliberate leaks in " deliberate
        exit found = 1
    }
}

/ leak of / {
    leak = $0
    frames = 0
    next
}
leak && /^ +#[0-9]+ / {
    frame[frames++] = $0
    next
}
leak {
    examine()
    leak = ""
}
/^=+$|^$|ERROR: LeakSanitizer: detected memory leaks|^SUMMARY: AddressSanitizer: .* leaked in/ { next }
{ # an error that is not a leak
    print
    found = 1
}
END {
    if (leak) {
        examine()
    }
    exit found
}

function is_ours(text) { return text ~ /\/(libvelotra_[a-z_]*|libtavro_[a-z_]*|liblog|libcutils)\.so\)/ }

function examine(    first, own, i) {
    while (first < frames && !is_ours(frame[first]) && frame[first] !~ /\/libjvm\.so\)/) {
        ++first
    }
    own = first
    while (own < frames && !is_ours(frame[own])) {
        ++own
    }
    # What the virtual machine allocates during a call is its own, except results that the caller must release.
    if (own == frames ||
        own > first && frame[own] !~ /JNIEnv_::(Get[A-Za-z]*(Chars|Elements|Critical)|New(Weak)?GlobalRef)\(/ ||
        is_deliberate(own)) {
        return
    }
    print leak
    for (i = 0; i < own + 4 && i < frames; ++i) {
        print frame[i]
    }
    found = 1
}

function is_deliberate(own,    i, rule) {
    for (i = own > 0 ? own - 1 : 0; i + 1 < frames; ++i) {
        for (rule = 1; rule <= rules; ++rule) {
            if (frame[i] ~ keeper[rule] && frame[i + 1] ~ caller[rule] && index(frame[i + 1], file[rule])) {
                return 1
            }
        }
    }
    return 0
}
