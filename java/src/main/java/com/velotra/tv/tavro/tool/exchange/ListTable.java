package com.velotra.tv.tavro.tool.exchange;

import com.velotra.tv.tavro.tool.records.Kind;
import java.util.List;
import java.util.Optional;
import java.util.OptionalInt;

/**
 * The records of one list as rows of text, as a CSV or JSON file has them.
 *
 * @param source name of the file in messages
 * @param kind of the list
 * @param listId of the list that was exported; empty if the file does not say
 * @param columns field names, and {@link Columns#UNNAMED_BYTES}
 * @param rows the records in list order
 */
public record ListTable(String source, Kind kind, OptionalInt listId, List<String> columns, List<Row> rows) {
    /**
     * One record.
     *
     * @param line number of the line where it begins, from 1
     * @param name what messages call it besides the line, which may have many; empty if the line is enough
     * @param values one per column; null where the file has none
     * @param problem why the row cannot be read; empty if it can
     */
    public record Row(int line, Optional<String> name, List<String> values, Optional<String> problem) {}
}
