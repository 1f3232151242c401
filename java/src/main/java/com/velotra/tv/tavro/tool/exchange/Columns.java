package com.velotra.tv.tavro.tool.exchange;

import com.velotra.tv.tavro.tool.input.SourceText;
import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import java.util.Arrays;
import java.util.List;
import java.util.Locale;
import java.util.stream.Stream;

/** The columns of CSV and JSON files. */
final class Columns {
    static final String KIND = "kind";
    static final String LIST_ID = "list_id";
    static final String RECORD_ID = "record_id";

    /** The bytes of a record that belong to no field. */
    static final String UNNAMED_BYTES = "unnamed_bytes";

    private static final int LAST_LIST = 0xFFFF;

    private Columns() {}

    /** Returns the columns that hold a record of a kind, in the order of an export. */
    static List<String> of(Kind kind) {
        return Stream.concat(Layout.of(kind).fields().stream().map(Field::name), Stream.of(UNNAMED_BYTES)).toList();
    }

    /** Returns a column name in the form in which exports write it: blanks removed, lower case, with underscores. */
    static String normalized(String name) {
        return name.strip().toLowerCase(Locale.ROOT).replace('-', '_');
    }

    /**
     * Returns the kind whose columns these are.
     *
     * @throws IllegalArgumentException if there is none or more than one
     */
    static Kind kindOf(List<String> columns) {
        List<Kind> kinds = Arrays.stream(Kind.values()).filter(kind -> of(kind).containsAll(columns)).toList();
        if (kinds.size() == 1) {
            return kinds.get(0);
        }
        if (!kinds.isEmpty()) {
            throw new IllegalArgumentException("the columns do not show which kind of list this is; add a column "
                    + KIND + ", or use --kind");
        }
        throw new IllegalArgumentException("no kind of list has all these columns: "
                + Text.excerpt(String.join(", ", columns)));
    }

    /**
     * Checks that all columns are columns of a kind, and that one is the record id.
     *
     * @throws IllegalArgumentException naming the column that is wrong
     */
    static void check(Kind kind, List<String> columns) {
        List<String> known = of(kind);
        for (String column : columns) {
            if (!known.contains(column)) {
                throw new IllegalArgumentException("unknown column " + Text.excerpt(column) + "; " + kind + " have "
                        + String.join(", ", known));
            }
        }
        if (!columns.contains(RECORD_ID)) {
            throw new IllegalArgumentException("there is no column " + RECORD_ID);
        }
        if (columns.stream().distinct().count() < columns.size()) {
            throw new IllegalArgumentException("a column appears twice");
        }
    }

    /**
     * Returns the kind of that name.
     *
     * @throws IllegalArgumentException if there is none
     */
    static Kind kind(String name) {
        return Arrays.stream(Kind.values()).filter(kind -> kind.toString().equals(name)).findFirst()
                .orElseThrow(() -> new IllegalArgumentException("column " + KIND + ": " + Text.excerpt(name)
                        + " is not services, streams, networks or satellites"));
    }

    /**
     * Returns a list id.
     *
     * @throws IllegalArgumentException if the text is not one
     */
    static int listId(String text) {
        return SourceText.number(text, 10, 1, LAST_LIST, LIST_ID);
    }
}
