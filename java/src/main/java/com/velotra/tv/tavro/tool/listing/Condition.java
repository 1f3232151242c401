package com.velotra.tv.tavro.tool.listing;

import com.velotra.tv.tavro.tool.records.Record;

/** A condition that selects the records to list. */
public interface Condition {
    /** Returns whether a record fulfils it. */
    boolean test(Record record, References references);
}
