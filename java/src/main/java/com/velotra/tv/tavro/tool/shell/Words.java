package com.velotra.tv.tavro.tool.shell;

import com.velotra.tv.tavro.tool.input.Failure;
import java.util.ArrayList;
import java.util.List;

/**
 * The words of a line, separated and quoted as in a POSIX shell: single quotes, double quotes, backslashes, and
 * comments after {@code #}. Nothing is expanded.
 */
final class Words {
    private final List<String> words = new ArrayList<>();
    private StringBuilder word; // null between words
    private char quote; // 0 outside quotes
    private boolean escaped;

    private Words(String line) {
        for (int i = 0; i < line.length(); i++) {
            if (word == null && line.charAt(i) == '#') {
                return;
            }
            accept(line.charAt(i));
        }
    }

    /**
     * Splits a line.
     *
     * @throws Failure if a quote is not closed
     */
    static List<String> split(String line) {
        Words split = new Words(line);
        if (split.quote != 0 || split.escaped) {
            throw new Failure(split.escaped ? "the line ends with a backslash"
                    : "the quote " + split.quote + " is not closed");
        }
        split.end();
        return split.words;
    }

    /** Splits the part of a line before the cursor. The last word is the one at the cursor; it may be empty. */
    static List<String> before(String line, int cursor) {
        Words split = new Words(line.substring(0, cursor));
        if (split.word == null) {
            split.word = new StringBuilder();
        }
        split.end();
        return split.words;
    }

    private void accept(char next) {
        boolean blank = Character.isWhitespace(next);
        if (escaped) {
            // In double quotes, a backslash stays unless it quotes something.
            begin().append(quote == '"' && next != '"' && next != '\\' ? "\\" : "").append(next);
            escaped = false;
        } else if (next == '\\' && quote != '\'') {
            begin();
            escaped = true;
        } else if (quote == 0 && (next == '\'' || next == '"')) {
            begin();
            quote = next;
        } else if (quote != 0 && next == quote) {
            quote = 0;
        } else if (quote == 0 && blank) {
            end();
        } else {
            begin().append(next);
        }
    }

    private StringBuilder begin() {
        word = word == null ? new StringBuilder() : word;
        return word;
    }

    private void end() {
        if (word != null) {
            words.add(word.toString());
            word = null;
        }
    }
}
