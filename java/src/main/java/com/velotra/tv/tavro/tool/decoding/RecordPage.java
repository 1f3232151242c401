package com.velotra.tv.tavro.tool.decoding;

import com.velotra.tv.tavro.tool.output.Table;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.stream.Collectors;

/** One record as text, field by field. */
public final class RecordPage {
    private static final int LABEL_COLUMNS = 30;
    private static final String UNNAMED = "unnamed bytes";

    private RecordPage() {}

    /** Returns one line for each field, with its label and value; and one for the unnamed bytes that are not zero. */
    public static String of(DecodedRecord decoded) {
        StringBuilder page = new StringBuilder();
        for (Field field : decoded.layout().fields(decoded.record())) {
            add(page, field.label(), decoded.text(field));
        }
        String rest = decoded.layout().rest(decoded.record());
        if (!rest.isEmpty()) {
            add(page, UNNAMED, rest);
        }
        return page.toString();
    }

    private static void add(StringBuilder page, String label, String value) {
        page.append(label).append(" ".repeat(Math.max(0, LABEL_COLUMNS - label.length()))).append(' ').append(value)
                .append(System.lineSeparator());
    }

    /**
     * Returns a table of lines of at most {@code columns}: for each field its place, label, value, header name and Java
     * keys, and for each known bit of a flag word its value and Java key.
     */
    public static String withBytes(DecodedRecord decoded, int columns) {
        Record record = decoded.record();
        Table table = new Table(">offset", ">bytes", "field", "value", "header name", "Java key");
        for (Field field : decoded.layout().fields(record)) {
            table.add(field.offset(), field.width(), field.label(), decoded.text(field), field.path(record),
                    field.keys().stream().map(Field.Key::name).collect(Collectors.joining(", ")));
            for (Field.Flag flag : field.flags()) {
                boolean set = (field.number(record) & flag.mask()) != 0;
                table.add("", "", "  bit 0x" + Long.toHexString(flag.mask()), set ? "  1" : "  0", "", flag.key());
            }
        }
        String rest = decoded.layout().rest(record);
        if (!rest.isEmpty()) {
            table.add("", "", UNNAMED, rest, "", "");
        }
        return table.toString(columns);
    }
}
