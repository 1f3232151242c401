package com.velotra.tv.tavro.tool.shell;

/**
 * A way to complete a word.
 *
 * @param word the whole word
 * @param description what it is, for a list of choices; may be empty
 * @param whole whether a blank follows
 */
record Suggestion(String word, String description, boolean whole) {
    static Suggestion word(String word, String description) {
        return new Suggestion(word, description, true);
    }

    static Suggestion start(String word, String description) {
        return new Suggestion(word, description, false);
    }
}
