package com.velotra.tv.tavro.tool.matching;

import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Record;

/**
 * A field, or some bits of a flag word.
 *
 * @param field the field
 * @param mask the bits; {@link #WHOLE} for the whole field, which may be a text
 */
record Bits(Field field, long mask) {
    static final long WHOLE = -1;

    /** Copies the bits from a record into the bytes of another one, if both records have the field. */
    void copy(Record from, Record to, byte[] toBytes) {
        if (!field.in(from) || !field.in(to)) {
            return;
        }
        byte[] value = from.bytes(field.offset(), field.width());
        for (int i = 0; i < value.length; i++) {
            int of = mask == WHOLE ? 0xFF : (int) (mask >>> 8 * i) & 0xFF;
            int at = field.offset() + i;
            toBytes[at] = (byte) (toBytes[at] & ~of | value[i] & of);
        }
    }
}
