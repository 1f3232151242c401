package com.velotra.tv.tavro.tool;

/** Words for a POSIX shell. */
final class Shell {
    private Shell() {}

    /** The word as it can be pasted into a shell: in single quotes unless it needs none. */
    static String quoted(String word) {
        return word.matches("[A-Za-z0-9_./:=@%+-]+") ? word : "'" + word.replace("'", "'\\''") + "'";
    }
}
