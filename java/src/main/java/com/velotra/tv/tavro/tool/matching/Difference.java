package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.tool.records.Record;
import java.util.List;

/**
 * A record that is in one list only, or that is not the same in both.
 *
 * @param from the record in the first list; null if it was added
 * @param to the record in the second list; null if it was removed
 * @param fromPlace its place in the first list, from 1; 0 if it was added
 * @param toPlace its place in the second list, from 1; 0 if it was removed
 * @param moved whether its order among the records of both lists changed
 * @param fields the values that differ
 */
public record Difference(
        Record from, Record to, int fromPlace, int toPlace, boolean moved, List<FieldChange> fields) {
    public boolean added() {
        return from == null;
    }

    public boolean removed() {
        return to == null;
    }

    public boolean changed() {
        return !fields.isEmpty();
    }

    /** Returns the record in the first list, or, if it was added, in the second. */
    public Record record() {
        return added() ? to : from;
    }
}
