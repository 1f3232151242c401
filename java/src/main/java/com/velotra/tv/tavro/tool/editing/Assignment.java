package com.velotra.tv.tavro.tool.editing;

/**
 * A value that the user gives a field, as NAME=VALUE.
 *
 * @param name a Java key or the name of a field
 * @param value its text
 */
public record Assignment(String name, String value) {
    /**
     * Returns the assignment that a text stands for.
     *
     * @throws IllegalArgumentException if it has no name or no equals sign
     */
    public static Assignment parse(String text) {
        int equals = text.indexOf('=');
        if (equals <= 0) {
            throw new IllegalArgumentException("'" + text + "' is not of the form KEY=VALUE");
        }
        return new Assignment(text.substring(0, equals), text.substring(equals + 1));
    }
}
