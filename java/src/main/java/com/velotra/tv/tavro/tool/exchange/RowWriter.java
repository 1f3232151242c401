package com.velotra.tv.tavro.tool.exchange;

import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;

/** Passes the values of a record to a writer, column by column. */
final class RowWriter {
    /** Receives one value of each column, in the order of {@link Columns#of}. */
    interface Cells<E extends Exception> {
        /** The value of a field as text. */
        void field(Field field, String value) throws E;

        /** A field that the record does not have. */
        void absent(Field field) throws E;

        /** The bytes of the record that belong to no field; empty if they are zero. */
        void unnamedBytes(String value) throws E;
    }

    private final Layout layout;

    RowWriter(Kind kind) {
        layout = Layout.of(kind);
    }

    <E extends Exception> void write(Record record, Cells<E> cells) throws E {
        for (Field field : layout.fields()) {
            if (field.in(record)) {
                cells.field(field, field.format(record));
            } else {
                cells.absent(field);
            }
        }
        cells.unnamedBytes(layout.rest(record));
    }
}
