package com.velotra.tv.tavro.tool.listing;

import static com.velotra.tv.tavro.tool.listing.Columns.column;
import static com.velotra.tv.tavro.tool.listing.Columns.field;

import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.List;

/** The computed columns of networks. */
final class NetworkColumns {
    private static final Kind KIND = Kind.NETWORKS;
    private static final Field FLAGS = field(KIND, "flags");
    private static final Field NAME = field(KIND, "name");
    private static final Field NETWORK_ID = field(KIND, "network_id");

    static final List<Column> ALL = List.of(
            column(KIND, "record_id", "record"),
            Column.flag("favorite", "favorite", FLAGS, "NwlFavNetwork"),
            Column.flag("candidate", "candidate", FLAGS, "NwlFavNetworkCandidate"));

    private NetworkColumns() {}

    /** What a network is called: its name, or else its id. */
    static String title(Record network) {
        String name = NAME.format(network);
        return name.isEmpty() ? "network " + NETWORK_ID.number(network) : name;
    }
}
