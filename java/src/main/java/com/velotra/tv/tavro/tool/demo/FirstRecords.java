package com.velotra.tv.tavro.tool.demo;

import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.tool.listing.Column;
import com.velotra.tv.tavro.tool.listing.Columns;
import com.velotra.tv.tavro.tool.listing.Listing;
import com.velotra.tv.tavro.tool.listing.References;
import com.velotra.tv.tavro.tool.output.Table;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.List;

/** The first records of a list as the demo prints them: in the columns that ./tavro list always prints. */
final class FirstRecords {
    private static final int COLUMNS = 110;

    private FirstRecords() {}

    /** Returns the lines of a table with the first {@code most} records, and one that counts the others. */
    static List<String> lines(List<Record> records, int most) {
        if (records.isEmpty()) {
            return List.of();
        }
        Columns columns = Columns.of(records.get(0).kind());
        List<Column> always = columns.usual().stream().filter(column -> !columns.isOptional(column)).toList();
        List<Record> first = records.subList(0, Math.min(most, records.size()));
        try (References references = References.inStorage()) {
            String table = Listing.table(always, first, references).toString(COLUMNS)
                    + Table.more(records.size() - first.size());
            return table.lines().toList();
        }
    }

    /** Returns services as records. */
    static List<Record> of(List<ServiceRecord> services) {
        return services.stream().map(service -> Record.of(Kind.SERVICES, service.bytes())).toList();
    }
}
