package com.velotra.tv.tavro.tool.editing;

import com.velotra.tv.tavro.services.channellist.RecordId;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * Records of a list by their ids, as the user names them: {@code LIST,RECORD} or {@code LIST,FIRST-LAST}.
 *
 * @param listId the list
 * @param first the first record id
 * @param last the last record id, which may be the first
 */
public record RecordRange(int listId, int first, int last) {
    private static final Pattern FORM = Pattern.compile("([0-9]{1,9}),([0-9]{1,9})(?:-([0-9]{1,9}))?");

    /**
     * Returns the records that a text names.
     *
     * @throws IllegalArgumentException if it names none
     */
    public static RecordRange parse(String text) {
        Matcher form = FORM.matcher(text);
        if (form.matches()) {
            int listId = Integer.parseInt(form.group(1));
            int first = Integer.parseInt(form.group(2));
            int last = form.group(3) == null ? first : Integer.parseInt(form.group(3));
            if (first <= last && new RecordId(listId, last).namesRecord()) {
                return new RecordRange(listId, first, last);
            }
        }
        throw new IllegalArgumentException("'" + text + "' names no records: write LIST,RECORD or LIST,FIRST-LAST, a "
                + "list id from 1 to 65535 and record ids from 0 to 65534");
    }

    boolean contains(int recordId) {
        return recordId >= first && recordId <= last;
    }

    /** Returns the words for messages, such as "record 17" or "records 17 to 20". */
    String words() {
        return first == last ? "record " + first : "records " + first + " to " + last;
    }
}
