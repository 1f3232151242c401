package com.velotra.tv.tavro.tool;

/** Commands that the user can paste into a shell. */
final class Shell {
    private Shell() {}

    /** Returns how the user called the tool. */
    static String command() {
        return System.getProperty("tavro.command", Main.NAME);
    }

    /** Returns the word for a POSIX shell, in single quotes if it needs them. */
    static String quoted(String word) {
        return word.matches("[A-Za-z0-9_./:=@%+-]+") ? word : "'" + word.replace("'", "'\\''") + "'";
    }
}
