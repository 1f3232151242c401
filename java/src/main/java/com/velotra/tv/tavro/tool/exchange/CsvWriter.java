package com.velotra.tv.tavro.tool.exchange;

import com.velotra.tv.tavro.services.channellist.RecordField.Style;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.io.IOException;
import org.apache.commons.csv.CSVFormat;
import org.apache.commons.csv.CSVPrinter;

/**
 * Lists as CSV (RFC 4180, with line feeds): a row with the column names, and a row per record in list order. The
 * columns are kind, list id, and all fields. Texts are protected from spreadsheets, see {@link SpreadsheetCell}.
 */
public final class CsvWriter {
    static final CSVFormat FORMAT = CSVFormat.Builder.create(CSVFormat.RFC4180).setRecordSeparator('\n').build();

    private CsvWriter() {}

    /** Writes a list. */
    public static void write(RecordList list, Appendable out) throws IOException {
        CSVPrinter printer = new CSVPrinter(out, FORMAT);
        printer.print(Columns.KIND);
        printer.print(Columns.LIST_ID);
        for (String column : Columns.of(list.kind())) {
            printer.print(column);
        }
        printer.println();
        RowWriter writer = new RowWriter(list.kind());
        RowWriter.Cells<IOException> cells = new Cells(printer);
        for (Record record : list) {
            printer.print(list.kind());
            printer.print(list.listId());
            writer.write(record, cells);
            printer.println();
        }
    }

    private record Cells(CSVPrinter printer) implements RowWriter.Cells<IOException> {
        @Override
        public void field(Field field, String value) throws IOException {
            printer.print(field.style() == Style.TEXT ? SpreadsheetCell.of(value) : value);
        }

        @Override
        public void absent(Field field) throws IOException {
            printer.print("");
        }

        @Override
        public void unnamedBytes(String value) throws IOException {
            printer.print(SpreadsheetCell.of(value));
        }
    }
}
