package com.velotra.tv.tavro.tool.exchange;

import com.velotra.tv.tavro.services.channellist.RecordField.Style;
import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.List;

/** Converts the rows of a table to records. */
final class RowReader {
    /** Receives what is wrong with the value of a column. */
    interface Problems {
        void add(String column, String problem);
    }

    private final Kind kind;
    private final Layout layout;
    private final List<Field> fields;
    private final int[] columns; // of each field; -1 if the table has none
    private final boolean[] common; // fields of every record, which decide the others
    private final int unnamedBytes; // column

    RowReader(Kind kind, List<String> columns) {
        this.kind = kind;
        layout = Layout.of(kind);
        fields = layout.fields();
        Record empty = Record.of(kind, new byte[kind.recordBytes()]);
        this.columns = new int[fields.size()];
        common = new boolean[fields.size()];
        for (int i = 0; i < fields.size(); i++) {
            this.columns[i] = columns.indexOf(fields.get(i).name());
            common[i] = fields.get(i).in(empty);
        }
        unnamedBytes = columns.indexOf(Columns.UNNAMED_BYTES);
    }

    /**
     * Returns a record with the values of a row. Fields for which the row has no value keep theirs: those without a
     * column, with null, and numbers that are empty. If the values change which fields the record has, the fields that
     * it did not have before are zero unless the row has them.
     */
    Record read(Record before, List<String> values, Problems problems) {
        byte[] bytes = before.bytes();
        for (int i = 0; i < columns.length; i++) {
            if (common[i]) {
                put(fields.get(i), value(values, columns[i]), bytes, problems);
            }
        }
        Record selected = Record.of(kind, bytes);
        if (!sameFields(selected, before)) {
            bytes = sharedFields(selected, before);
        }
        for (int i = 0; i < columns.length; i++) {
            if (!common[i]) {
                putSpecific(fields.get(i), value(values, columns[i]), selected, bytes, problems);
            }
        }
        String unnamed = value(values, unnamedBytes);
        if (unnamed != null) {
            try {
                layout.parseRest(unnamed, bytes);
            } catch (IllegalArgumentException e) {
                problems.add(Columns.UNNAMED_BYTES, e.getMessage());
            }
        }
        return Record.of(kind, bytes);
    }

    private static String value(List<String> values, int column) {
        return column >= 0 && column < values.size() ? values.get(column) : null;
    }

    private boolean sameFields(Record one, Record other) {
        List<Field> first = layout.fields(one);
        List<Field> second = layout.fields(other);
        return first == second || first.equals(second); // the layout returns the same list for the same view
    }

    private static void putSpecific(Field field, String value, Record selected, byte[] bytes, Problems problems) {
        if (field.in(selected)) {
            put(field, value, bytes, problems);
        } else if (value != null && !value.isEmpty()) {
            problems.add(field.name(), "the record has no such field, but a value: " + Text.excerpt(value));
        }
    }

    private static void put(Field field, String value, byte[] bytes, Problems problems) {
        if (value == null || value.isEmpty() && field.style() != Style.TEXT) {
            return;
        }
        try {
            field.parse(value, bytes);
        } catch (IllegalArgumentException e) {
            problems.add(field.name(), e.getMessage());
        }
    }

    /** Returns the fields that a record had before and still has, and zeros. */
    private byte[] sharedFields(Record selected, Record before) {
        byte[] bytes = new byte[kind.recordBytes()];
        for (Field field : layout.fields(selected)) {
            if (field.in(before)) {
                field.parse(field.format(selected), bytes);
            }
        }
        return bytes;
    }
}
