package com.velotra.tv.tavro.tool.exchange;

import com.velotra.tv.tavro.tool.exchange.ListTable.Row;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.input.Text;
import com.velotra.tv.tavro.tool.records.Kind;
import java.io.IOException;
import java.io.StringReader;
import java.io.UncheckedIOException;
import java.util.ArrayList;
import java.util.List;
import java.util.Optional;
import java.util.OptionalInt;
import java.util.regex.Matcher;
import java.util.regex.Pattern;
import org.apache.commons.csv.CSVFormat;
import org.apache.commons.csv.CSVParser;
import org.apache.commons.csv.CSVRecord;

/** Reads a list from CSV: what {@link CsvWriter} wrote, also after a spreadsheet has saved it. */
final class CsvReader {
    private static final Pattern LINE = Pattern.compile("^\\((?:start)?line (\\d+)\\)");

    private final String source;
    private final SharedTexts texts = new SharedTexts();
    private final List<String> header = new ArrayList<>();
    private final List<Row> rows = new ArrayList<>();
    private String kindName = "";
    private String listId = "";

    private CsvReader(String source) {
        this.source = source;
    }

    /**
     * Reads a list.
     *
     * @param kind of a file that does not say it
     * @throws Failure if the file is not CSV or not Unicode, or its columns are wrong
     */
    static ListTable read(Source source, Optional<Kind> kind) {
        String text = source.unicode();
        char separator = text.lines().findFirst().flatMap(ListFormats::separator).orElse(',');
        CSVFormat format = CSVFormat.Builder.create(CsvWriter.FORMAT).setDelimiter(separator).build();
        CsvReader reader = new CsvReader(source.name());
        try (CSVParser parser = CSVParser.parse(new StringReader(text), format)) {
            reader.readRows(parser);
        } catch (IOException | IllegalStateException | UncheckedIOException e) {
            throw reader.failure(reason(e));
        }
        return reader.table(kind);
    }

    /** Commons CSV names the line and the mistake, in an exception that may be wrapped. */
    private static String reason(Exception failure) {
        Throwable cause = failure.getCause() == null ? failure : failure.getCause();
        String message = String.valueOf(cause.getMessage());
        Matcher line = LINE.matcher(message);
        if (!line.find()) {
            return "it is not valid CSV: " + Text.excerpt(message);
        }
        return "line " + line.group(1) + ": it is not valid CSV: " + (message.contains("EOF reached")
                ? "the quotation mark of a cell that begins here is not closed; add a \" at the end of the cell"
                : "text after the quotation mark that closes a cell; write a \" in a cell as \"\"");
    }

    private Failure failure(String reason) {
        return new Failure("cannot import " + source + ": " + reason);
    }

    private void readRows(CSVParser parser) {
        long line = 1;
        for (CSVRecord cells : parser) {
            long begin = line;
            line = parser.getCurrentLineNumber() + 1;
            if (cells.stream().allMatch(String::isEmpty)) {
                continue;
            }
            if (header.isEmpty()) {
                cells.forEach(cell -> header.add(Columns.normalized(cell)));
            } else {
                rows.add(row((int) begin, cells));
            }
        }
    }

    private Row row(int line, CSVRecord cells) {
        if (cells.size() != header.size()) {
            return new Row(line, Optional.empty(), List.of(), Optional.of(Text.count(cells.size(), "cell")
                    + "; the first row has " + Text.count(header.size(), "cell")));
        }
        List<String> values = new ArrayList<>(header.size());
        Optional<String> problem = Optional.empty();
        for (int i = 0; i < header.size(); i++) {
            String cell = texts.shared(SpreadsheetCell.text(cells.get(i)));
            switch (header.get(i)) {
                case Columns.KIND -> {
                    kindName = kindName.isEmpty() ? cell : kindName;
                    problem = problem.or(() -> difference(Columns.KIND, cell, kindName));
                }
                case Columns.LIST_ID -> {
                    listId = listId.isEmpty() ? cell : listId;
                    problem = problem.or(() -> difference(Columns.LIST_ID, cell, listId));
                }
                default -> values.add(cell);
            }
        }
        return new Row(line, Optional.empty(), values, problem);
    }

    private static Optional<String> difference(String column, String cell, String first) {
        return cell.isEmpty() || cell.equals(first) ? Optional.empty()
                : Optional.of("column " + column + ": " + Text.excerpt(cell) + " here, and " + Text.excerpt(first)
                        + " above; a file has one list");
    }

    private ListTable table(Optional<Kind> wanted) {
        List<String> columns = header.stream()
                .filter(column -> !column.equals(Columns.KIND) && !column.equals(Columns.LIST_ID)).toList();
        try {
            Kind kind = kindName.isEmpty() ? wanted.orElseGet(() -> Columns.kindOf(columns)) : Columns.kind(kindName);
            if (wanted.isPresent() && wanted.get() != kind) {
                throw new IllegalArgumentException("it has " + kind + ", not " + wanted.get());
            }
            Columns.check(kind, columns);
            OptionalInt id = listId.isEmpty() ? OptionalInt.empty() : OptionalInt.of(Columns.listId(listId));
            return new ListTable(source, kind, id, columns, rows);
        } catch (IllegalArgumentException e) {
            throw failure(e.getMessage());
        }
    }
}
