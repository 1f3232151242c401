package com.velotra.tv.tavro.tool.listing;

import static com.velotra.tv.tavro.tool.listing.Columns.column;
import static com.velotra.tv.tavro.tool.listing.Columns.field;
import static com.velotra.tv.tavro.tool.listing.Columns.reference;

import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.List;
import java.util.Map;

/** The computed columns of transport streams. They unite the fields of the three media. */
final class StreamColumns {
    private static final Kind KIND = Kind.STREAMS;
    private static final int TERRESTRIAL = 1;
    private static final int CABLE = 2;
    private static final int SATELLITE = 3;
    private static final String[][] STANDARDS =
            {{null, "DVB-T", "DVB-T2"}, {null, "DVB-C", "DVB-C2"}, {null, "DVB-S", "DVB-S2"}};

    /** The polarizations of the satellite delivery system descriptor (ETSI EN 300 468, 6.2.13.2). */
    private static final Map<Long, String> POLARIZATIONS = Map.of(0L, "H", 1L, "V", 2L, "L", 3L, "R");

    /** The codes that the library stores for the inner FEC. */
    private static final Map<Long, String> FEC = Map.of(2L, "1/2", 3L, "2/3", 4L, "3/4", 6L, "5/6", 7L, "7/8",
            8L, "8/9", 9L, "3/5", 10L, "4/5", 11L, "9/10");

    /** The modulations as the imports number them. */
    private static final Map<Long, String> MODULATIONS = Map.of(1L, "QPSK", 2L, "8PSK", 3L, "16QAM", 4L, "32QAM",
            5L, "64QAM", 6L, "128QAM", 7L, "256QAM", 8L, "16APSK", 9L, "32APSK");

    /** The codes that the library stores for the bandwidth, in MHz. */
    private static final Map<Long, String> BANDWIDTHS =
            Map.of(1L, "6", 2L, "7", 3L, "8", 4L, "5", 5L, "10", 6L, "1.712");

    private static final Field MEDIUM = field(KIND, "medium");
    private static final Field NAME = field(KIND, "name");
    private static final Field NWL_ID = field(KIND, "nwl_id");
    private static final Field NWL_RECORD_ID = field(KIND, "nwl_record_id");
    private static final Field SATL_ID = field(KIND, "satl_id");
    private static final Field SATL_RECORD_ID = field(KIND, "satl_record_id");

    private static final Column FREQUENCY = column(KIND, "frequency", "frequency");
    private static final Column POLARIZATION =
            Column.code("polarization", "polarization", POLARIZATIONS, ofMedium(null, null, "sat_polarization"));
    private static final Column.Numbers MODE = ofMedium("ter_mode", "cab_mode", "sat_mode");

    static final List<Column> ALL = List.of(
            column(KIND, "record_id", "record"),
            Column.term("standard", "standard", (stream, references) -> standard(stream)),
            FREQUENCY,
            POLARIZATION,
            Column.number("symbol_rate", "symbol rate", ofMedium(null, "cab_symbol_rate", "sat_symbol_rate")),
            Column.code("fec", "inner FEC", FEC, ofMedium("ter_fec_inner", "cab_fec_inner", "sat_fec_inner")),
            Column.code("modulation", "modulation", MODULATIONS,
                    ofMedium("ter_modulation", "cab_modulation", "sat_modulation")),
            Column.code("bandwidth", "bandwidth, MHz", BANDWIDTHS, ofMedium("ter_bandwidth", null, null)),
            column(KIND, "transport_stream_id", "stream id"),
            column(KIND, "original_network_id", "original network id"),
            Column.text("network_record", "network record",
                    (stream, references) -> reference(NWL_ID, NWL_RECORD_ID, stream)),
            Column.text("network", "network", (stream, references) -> {
                Record network = network(stream, references);
                return network == null ? null : NetworkColumns.title(network);
            }),
            Column.text("satellite_record", "satellite record",
                    (stream, references) -> reference(SATL_ID, SATL_RECORD_ID, stream)),
            Column.text("satellite", "satellite", (stream, references) -> {
                Record satellite = satellite(stream, references);
                return satellite == null ? null : SatelliteColumns.title(satellite);
            }),
            SatelliteColumns.POSITION.through(StreamColumns::satellite));

    private StreamColumns() {}


    /** The number in the field of the record's medium; null stands for a medium without the field. */
    private static Column.Numbers ofMedium(String terrestrial, String cable, String satellite) {
        Field[] fields = new Field[SATELLITE + 1];
        fields[TERRESTRIAL] = terrestrial == null ? null : field(KIND, terrestrial);
        fields[CABLE] = cable == null ? null : field(KIND, cable);
        fields[SATELLITE] = satellite == null ? null : field(KIND, satellite);
        return (stream, references) -> {
            long medium = MEDIUM.number(stream);
            Field field = medium <= SATELLITE ? fields[(int) medium] : null;
            return field == null ? Column.NONE : field.number(stream);
        };
    }

    private static String standard(Record stream) {
        long medium = MEDIUM.number(stream);
        long mode = MODE.of(stream, null);
        if (mode == Column.NONE) {
            return "medium " + medium;
        }
        String[] modes = STANDARDS[(int) medium - 1];
        return mode < modes.length ? modes[(int) mode] : null;
    }

    /** The network record of a stream; null if there is none. */
    static Record network(Record stream, References references) {
        return references.record(Kind.NETWORKS, NWL_ID.number(stream), NWL_RECORD_ID.number(stream));
    }

    /** The satellite record of a stream; null if there is none. */
    static Record satellite(Record stream, References references) {
        return references.record(Kind.SATELLITES, SATL_ID.number(stream), SATL_RECORD_ID.number(stream));
    }

    /** What a stream is called: its name, or else its frequency and polarization. */
    static String title(Record stream) {
        String name = NAME.format(stream);
        if (!name.isEmpty()) {
            return name;
        }
        String polarization = POLARIZATION.text(stream, null);
        return FREQUENCY.text(stream, null) + (polarization == null ? "" : " " + polarization);
    }
}
