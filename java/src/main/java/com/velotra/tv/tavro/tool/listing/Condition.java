package com.velotra.tv.tavro.tool.listing;

import com.velotra.tv.tavro.tool.records.Record;

/** What a record must fulfil to be listed. */
public interface Condition {
    /** Returns whether a record fulfils it. */
    boolean test(Record record, References references);
}
