package com.velotra.tv.tavro.tool.listing;

import com.velotra.tv.tavro.tool.output.Table;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;

/** Records as a table or as JSON. */
public final class Listing {
    private Listing() {}

    /** Returns the usual columns without the optional ones that have no value. */
    public static List<Column> columns(Columns columns, List<Record> records, References references) {
        return columns.usual().stream()
                .filter(column -> !columns.isOptional(column)
                        || records.stream().anyMatch(record -> column.text(record, references) != null))
                .toList();
    }

    /** Returns the records as a table, one per row. */
    public static Table table(List<Column> columns, List<Record> records, References references) {
        Table table = new Table(columns.stream()
                .map(column -> (column.alignsRight() ? ">" : "") + column.heading())
                .toArray(String[]::new));
        for (Record record : records) {
            table.add(columns.stream().map(column -> column.cell(record, references)).toArray());
        }
        return table;
    }

    /** Returns a record as an object for JSON, with the columns as members. */
    public static Map<String, Object> object(List<Column> columns, Record record, References references) {
        Map<String, Object> object = new LinkedHashMap<>();
        columns.forEach(column -> object.put(column.name(), column.json(record, references)));
        return object;
    }
}
