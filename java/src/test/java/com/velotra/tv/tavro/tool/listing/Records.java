package com.velotra.tv.tavro.tool.listing;

import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;

/** Records for tests. */
public final class Records {
    private Records() {}

    /** Returns a record with values given as {@code field=value}; all other bytes are zero. Services are DVB. */
    public static Record of(Kind kind, String... values) {
        byte[] bytes = new byte[kind.recordBytes()];
        if (kind == Kind.SERVICES) {
            put(kind, "broadcast_type=2", bytes);
        }
        for (String value : values) {
            put(kind, value, bytes);
        }
        return Record.of(kind, bytes);
    }

    private static void put(Kind kind, String value, byte[] bytes) {
        int equals = value.indexOf('=');
        Layout.of(kind).field(value.substring(0, equals)).orElseThrow().parse(value.substring(equals + 1), bytes);
    }
}
