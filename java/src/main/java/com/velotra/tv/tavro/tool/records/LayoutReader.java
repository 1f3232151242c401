package com.velotra.tv.tavro.tool.records;

import com.velotra.tv.tavro.services.channellist.RecordField.Style;
import java.util.ArrayList;
import java.util.List;
import java.util.Locale;

/**
 * Reads the table of a record kind, which the program record_layouts makes from the C++ structures. Flags and codes
 * follow their field.
 */
final class LayoutReader {
    private static final String[] NONE = {};

    private final List<Layout.View> views = new ArrayList<>();
    private final List<Field> fields = new ArrayList<>();
    private final List<Layout.Reserved> reserved = new ArrayList<>();
    private final List<Field.Flag> flags = new ArrayList<>(); // of the current field
    private final List<Field.Code> codes = new ArrayList<>(); // of the current field
    private String[] field = NONE; // the current one
    private int selector;

    private LayoutReader() {}

    static Layout read(Kind kind) {
        LayoutReader reader = new LayoutReader();
        for (String line : table(kind).split("\n")) { // deliberate: no stream, which would slow down every start
            reader.add(line.split("\\|", -1));
        }
        reader.endField();
        return new Layout(kind, reader.selector, List.copyOf(reader.views), List.copyOf(reader.fields),
                List.copyOf(reader.reserved));
    }

    private static String table(Kind kind) {
        return switch (kind) {
            case SERVICES -> LayoutTables.SVL;
            case STREAMS -> LayoutTables.TSL;
            case NETWORKS -> LayoutTables.NWL;
            case SATELLITES -> LayoutTables.SATL;
        };
    }

    private void add(String[] row) {
        switch (row[0]) {
            case "record" -> selector = Integer.parseInt(row[3]);
            case "view" -> views.add(new Layout.View(Integer.parseInt(row[1]), row[2], row[3]));
            case "flag" -> flags.add(new Field.Flag(Long.parseLong(row[1]), row[2]));
            case "code" -> codes.add(new Field.Code(Long.parseLong(row[1]), Integer.parseInt(row[2]), row[3]));
            case "reserved" -> reserved.add(new Layout.Reserved(
                    Integer.parseInt(row[1]), Integer.parseInt(row[2]), row[4], views(row[3])));
            default -> {
                endField();
                field = row;
            }
        }
    }

    private void endField() {
        if (field.length > 0) {
            fields.add(new Field(new Field.Source(field[1], field[2], Integer.parseInt(field[3]),
                    Integer.parseInt(field[4]), Style.valueOf(field[5]), Integer.parseInt(field[6]), field[8], field[9],
                    field[11], keys(field[10]), List.copyOf(flags), List.copyOf(codes), views(field[7]), selector)));
        }
        flags.clear();
        codes.clear();
    }

    private static List<Field.Key> keys(String text) {
        List<Field.Key> keys = new ArrayList<>();
        for (String key : text.isEmpty() ? NONE : text.split(",")) {
            int equals = key.indexOf('=');
            String rule = key.substring(equals + 1).replace(' ', '_').toUpperCase(Locale.ROOT);
            keys.add(new Field.Key(key.substring(0, equals), Field.Rule.valueOf(rule)));
        }
        return List.copyOf(keys);
    }

    private List<Layout.View> views(String text) {
        List<Layout.View> some = new ArrayList<>();
        for (String value : text.isEmpty() ? NONE : text.split(",")) {
            for (Layout.View view : views) {
                if (view.value() == Integer.parseInt(value)) {
                    some.add(view);
                }
            }
        }
        return List.copyOf(some);
    }
}
