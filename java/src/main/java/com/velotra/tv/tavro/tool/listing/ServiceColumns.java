package com.velotra.tv.tavro.tool.listing;

import static com.velotra.tv.tavro.tool.listing.Columns.column;
import static com.velotra.tv.tavro.tool.listing.Columns.field;
import static com.velotra.tv.tavro.tool.listing.Columns.reference;

import com.velotra.tv.tavro.services.channellist.BroadcastType;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.List;
import java.util.Set;
import java.util.stream.Stream;

/** The computed columns of services, among them those of the transport stream that carries the service. */
final class ServiceColumns {
    private static final Kind KIND = Kind.SERVICES;
    private static final Field NETWORK_MASK = field(KIND, "network_mask");
    private static final Field BROADCAST_TYPE = field(KIND, "broadcast_type");
    private static final Field CHANNEL_ID = field(KIND, "channel_id");
    private static final Field LCN = field(KIND, "lcn");
    private static final Field NAME = field(KIND, "name");
    private static final Field SERVICE_ID = field(KIND, "service_id");
    private static final Field SERVICE_TYPE = field(KIND, "service_type");
    private static final Field TSL_ID = field(KIND, "tsl_id");
    private static final Field TSL_RECORD_ID = field(KIND, "tsl_record_id");
    private static final Field NWL_ID = field(KIND, "nwl_id");
    private static final Field NWL_RECORD_ID = field(KIND, "nwl_record_id");
    private static final Field SATL_ID = field(KIND, "satl_id");
    private static final Field SATL_RECORD_ID = field(KIND, "satl_record_id");
    private static final int MAJOR_NUMBER_SHIFT = 18;

    /** Columns of the transport stream that its services have, too. */
    private static final Set<String> OF_STREAM = Set.of("standard", "frequency", "polarization", "symbol_rate", "fec",
            "modulation", "bandwidth", "transport_stream_id", "original_network_id");

    static final List<Column> ALL = Stream.concat(own().stream(), StreamColumns.ALL.stream()
            .filter(column -> OF_STREAM.contains(column.name()))
            .map(column -> column.through(ServiceColumns::stream))).toList();

    private ServiceColumns() {}

    private static List<Column> own() {
        return List.of(
                column(KIND, "record_id", "record"),
                Column.numberOrNone("lcn", "LCN",
                        (service, references) -> LCN.in(service) ? LCN.number(service) : Column.NONE),
                Column.number("major", "major channel number", (service, references) -> major(service)),
                Column.term("type", "type", (service, references) -> type(service)),
                Column.flag("scrambled", "scrambled", NETWORK_MASK, "VnetScrambled"),
                Column.flag("shown", "shown", NETWORK_MASK, "VnetVisible"),
                Column.flag("blocked", "blocked", NETWORK_MASK, "ventChannelBlock"),
                Column.text("stream_record", "transport stream",
                        (service, references) -> reference(TSL_ID, TSL_RECORD_ID, service)),
                Column.text("stream", "stream name", (service, references) -> {
                    Record stream = stream(service, references);
                    return stream == null ? null : StreamColumns.title(stream);
                }),
                Column.text("network_record", "network record",
                        (service, references) -> reference(NWL_ID, NWL_RECORD_ID, service)),
                Column.text("network", "network", (service, references) -> {
                    Record network = network(service, references);
                    return network == null ? null : NetworkColumns.title(network);
                }),
                column(Kind.NETWORKS, "network_id", "network id").through(ServiceColumns::network),
                Column.text("satellite_record", "satellite record",
                        (service, references) -> reference(SATL_ID, SATL_RECORD_ID, service)),
                Column.text("satellite", "satellite", (service, references) -> {
                    Record satellite = satellite(service, references);
                    return satellite == null ? null : SatelliteColumns.title(satellite);
                }),
                SatelliteColumns.POSITION.through(ServiceColumns::satellite));
    }

    private static long major(Record service) {
        return switch ((int) BROADCAST_TYPE.number(service)) {
            case BroadcastType.DVB, BroadcastType.DTMB -> CHANNEL_ID.number(service) >>> MAJOR_NUMBER_SHIFT;
            case BroadcastType.TYPE_5 -> CHANNEL_ID.number(service) >>> MAJOR_NUMBER_SHIFT & 0xFF;
            default -> Column.NONE;
        };
    }

    /** Groups service types like the library's keys. */
    private static String type(Record service) {
        return switch ((int) SERVICE_TYPE.number(service)) {
            case 1, 4, 7 -> "TV";
            case 2, 5, 8 -> "radio";
            default -> "other";
        };
    }

    /** The transport stream record of a service; null if there is none. */
    static Record stream(Record service, References references) {
        return references.record(Kind.STREAMS, TSL_ID.number(service), TSL_RECORD_ID.number(service));
    }

    /** The network record of a service, or else that of its transport stream; null if there is none. */
    static Record network(Record service, References references) {
        Record network = ownNetwork(service, references);
        Record stream = network == null ? stream(service, references) : null;
        return stream == null ? network : StreamColumns.network(stream, references);
    }

    /** The network record that a service itself refers to; null if there is none. */
    static Record ownNetwork(Record service, References references) {
        return references.record(Kind.NETWORKS, NWL_ID.number(service), NWL_RECORD_ID.number(service));
    }

    /** The satellite record of a service, or else that of its transport stream; null if there is none. */
    static Record satellite(Record service, References references) {
        Record satellite = references.record(Kind.SATELLITES, SATL_ID.number(service), SATL_RECORD_ID.number(service));
        Record stream = satellite == null ? stream(service, references) : null;
        return stream == null ? satellite : StreamColumns.satellite(stream, references);
    }

    /** What a service is called: its name, or else its id. */
    static String title(Record service) {
        String name = NAME.format(service);
        return name.isEmpty() ? "service " + SERVICE_ID.number(service) : name;
    }
}
