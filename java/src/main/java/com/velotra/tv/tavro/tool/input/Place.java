package com.velotra.tv.tavro.tool.input;

/**
 * A line of an imported file.
 *
 * @param source the file's name as messages print it
 * @param line the line's number, from 1
 */
public record Place(String source, int line) {
    @Override
    public String toString() {
        return source + ":" + line;
    }
}
