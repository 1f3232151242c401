package com.velotra.tv.tavro.services.channellist;

import java.io.Serializable;
import java.util.Objects;
import java.util.regex.Pattern;

/**
 * Names one record of one list.
 *
 * <p>Records may hold any 16-bit numbers: 0,0 stands for no record. The methods of the list classes take list
 * ids from 1 to 65535 and record ids from 0 to 65534.
 *
 * @param listId the list
 * @param recordId the record within it
 */
public record RecordId(int listId, int recordId) implements Serializable {
    private static final Pattern DIGITS = Pattern.compile("[0-9]+");

    /** @throws IllegalArgumentException if a number is negative, which the natives cannot parse */
    public RecordId {
        if (listId < 0 || recordId < 0) {
            throw new IllegalArgumentException(listId + "," + recordId
                    + " is not a record identifier; its numbers start at 0");
        }
    }

    /**
     * Returns the identifier that the text form names, such as {@code 3,17}.
     *
     * @throws IllegalArgumentException if the text is not two decimal numbers with a comma between them
     */
    public static RecordId parse(String text) {
        Objects.requireNonNull(text, "text");
        String[] fields = text.split(",", -1);
        if (fields.length == 2 && DIGITS.matcher(fields[0]).matches() && DIGITS.matcher(fields[1]).matches()) {
            try {
                return new RecordId(Integer.parseInt(fields[0]), Integer.parseInt(fields[1]));
            } catch (NumberFormatException e) {
                // Beyond an int; falls through to the message that names the whole text.
            }
        }
        throw new IllegalArgumentException(
                "'" + Printable.of(text) + "' is not a record identifier; write list and record as in 3,17");
    }

    /**
     * Returns whether a list may have such a record: list id 1 to 65535, record id 0 to 65534. Ask before you look up
     * an identifier that was read from a record, where 0,0 stands for none.
     */
    public boolean namesRecord() {
        return Ids.nameARecord(this);
    }

    /** Returns the text form, such as {@code 3,17}. */
    @Override
    public String toString() {
        return listId + "," + recordId;
    }
}
