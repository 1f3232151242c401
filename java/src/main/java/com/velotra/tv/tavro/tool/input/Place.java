package com.velotra.tv.tavro.tool.input;

/**
 * A line of an imported file.
 *
 * @param source name of the file in messages
 * @param line line number, from 1
 */
public record Place(String source, int line) {
    @Override
    public String toString() {
        return source + ":" + line;
    }
}
