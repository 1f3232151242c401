package com.velotra.tv.tavro.tool.listing;

import com.velotra.tv.tavro.tool.records.Record;

/** What records are called in messages and listings. */
public final class Titles {
    private Titles() {}

    /** Returns the name of a record, or what stands for it: a frequency and polarization, a position or an id. */
    public static String of(Record record) {
        return switch (record.kind()) {
            case SERVICES -> ServiceColumns.title(record);
            case STREAMS -> StreamColumns.title(record);
            case NETWORKS -> NetworkColumns.title(record);
            case SATELLITES -> SatelliteColumns.title(record);
        };
    }
}
