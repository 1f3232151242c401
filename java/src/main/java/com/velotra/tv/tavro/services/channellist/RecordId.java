package com.velotra.tv.tavro.services.channellist;

import java.util.regex.Pattern;

/**
 * Names one record of one list.
 *
 * @param listId the list
 * @param recordId the record within it
 */
public record RecordId(int listId, int recordId) {
    private static final Pattern DIGITS = Pattern.compile("[0-9]+");

    /** @throws IllegalArgumentException when a number is negative: the native side takes digits alone */
    public RecordId {
        if (listId < 0 || recordId < 0) {
            throw new IllegalArgumentException(listId + "," + recordId + " is not a record identifier; its numbers start at 0");
        }
    }

    /**
     * Reads the text form, as in {@code 3,17}.
     *
     * @throws IllegalArgumentException when the text is not two decimal numbers with a comma between them
     */
    public static RecordId parse(String text) {
        String[] fields = text.split(",", -1);
        if (fields.length == 2 && DIGITS.matcher(fields[0]).matches() && DIGITS.matcher(fields[1]).matches()) {
            try {
                return new RecordId(Integer.parseInt(fields[0]), Integer.parseInt(fields[1]));
            } catch (NumberFormatException e) {
                // Beyond an int; falls through to the message that names the whole text.
            }
        }
        throw new IllegalArgumentException(
                "'" + text + "' is not a record identifier; write list and record as in 3,17");
    }

    /** The text form. */
    @Override
    public String toString() {
        return listId + "," + recordId;
    }
}
