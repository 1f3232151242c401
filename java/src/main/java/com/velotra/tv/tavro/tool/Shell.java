package com.velotra.tv.tavro.tool;

/** Words for a POSIX shell. */
final class Shell {
    private Shell() {}

    /** How the user called the tool, as it can be pasted: ./tavro calls it with its own name. */
    static String command() {
        return System.getProperty("tavro.command", Main.NAME);
    }

    /** The word as it can be pasted into a shell: in single quotes unless it needs none. */
    static String quoted(String word) {
        return word.matches("[A-Za-z0-9_./:=@%+-]+") ? word : "'" + word.replace("'", "'\\''") + "'";
    }
}
