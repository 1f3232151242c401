package com.velotra.tv.tavro.tool.tables;

import com.velotra.tv.tavro.services.channellist.TransportStreamField;
import com.velotra.tv.tavro.services.channellist.TransportStreamRecord;
import com.velotra.tv.tavro.tool.output.Table;
import java.util.List;

/** Transport streams as a table, one per row. */
public final class StreamTable {
    private static final String[][] STANDARDS =
            {{"-", "DVB-T", "DVB-T2"}, {"-", "DVB-C", "DVB-C2"}, {"-", "DVB-S", "DVB-S2"}};

    private StreamTable() {}

    /** Formats the first {@code most} transport streams of a list in lines of at most {@code columns}. */
    public static String of(List<TransportStreamRecord> streams, int most, int columns) {
        Table table = new Table(">record", "standard", ">frequency", ">symbol rate", ">stream id", ">network id",
                "network record", "name");
        for (TransportStreamRecord stream : streams.subList(0, Math.min(most, streams.size()))) {
            table.add(
                    stream.recordId(),
                    standard(stream),
                    stream.frequency(),
                    symbolRate(stream),
                    stream.transportStreamId(),
                    stream.originalNetworkId(),
                    stream.network(),
                    stream.name());
        }
        return table.toString(columns) + Table.more(streams.size() - most);
    }

    private static String standard(TransportStreamRecord stream) {
        int medium = stream.medium();
        if (medium < 1 || medium > STANDARDS.length) {
            return "medium " + medium;
        }
        String[] modes = STANDARDS[medium - 1];
        return modes[stream.mode() >= 0 && stream.mode() < modes.length ? stream.mode() : 0];
    }

    private static Object symbolRate(TransportStreamRecord stream) {
        return switch (stream.medium()) {
            case TransportStreamRecord.CABLE -> stream.value(TransportStreamField.CAB_SYMBOL_RATE);
            case TransportStreamRecord.SATELLITE -> stream.value(TransportStreamField.SAT_SYMBOL_RATE);
            default -> "-";
        };
    }
}
