package com.velotra.tv.tavro.tool.listing;

import com.velotra.tv.tavro.tool.records.Record;

/** What a record must fulfil to be listed. */
public interface Condition {
    /** Returns whether a record fulfils it. */
    boolean test(Record record, References references);

    /** Returns the condition that both must be fulfilled. */
    default Condition and(Condition other) {
        return (record, references) -> test(record, references) && other.test(record, references);
    }
}
