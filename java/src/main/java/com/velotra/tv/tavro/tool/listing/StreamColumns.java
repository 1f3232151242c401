package com.velotra.tv.tavro.tool.listing;

import static com.velotra.tv.tavro.tool.listing.Columns.column;
import static com.velotra.tv.tavro.tool.listing.Columns.field;
import static com.velotra.tv.tavro.tool.listing.Columns.reference;

import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.List;
import java.util.Locale;
import java.util.OptionalLong;

/** The computed columns of transport streams. They unite the fields of the three media. */
final class StreamColumns {
    private static final Kind KIND = Kind.STREAMS;
    private static final int TERRESTRIAL = 1;
    private static final int CABLE = 2;
    private static final int SATELLITE = 3;

    private static final Field MEDIUM = field(KIND, "medium");
    private static final Field NAME = field(KIND, "name");
    private static final Field NWL_ID = field(KIND, "nwl_id");
    private static final Field NWL_RECORD_ID = field(KIND, "nwl_record_id");
    private static final Field SATL_ID = field(KIND, "satl_id");
    private static final Field SATL_RECORD_ID = field(KIND, "satl_record_id");
    private static final Field SAT_POLARIZATION = field(KIND, "sat_polarization");
    private static final Field[] MODES =
            {null, field(KIND, "ter_mode"), field(KIND, "cab_mode"), field(KIND, "sat_mode")};

    private static final Column FREQUENCY = column(KIND, "frequency", "frequency");
    private static final Column POLARIZATION = Column.code("polarization", "polarization", false,
            ofMedium(null, null, "sat_polarization"), StreamColumns::polarization, StreamColumns::polarization);

    static final List<Column> ALL = List.of(
            column(KIND, "record_id", "record"),
            Column.term("standard", "standard", (stream, references) -> standard(stream)),
            FREQUENCY,
            POLARIZATION,
            Column.number("symbol_rate", "symbol rate", ofMedium(null, "cab_symbol_rate", "sat_symbol_rate"))
                    .in(field(KIND, "sat_symbol_rate").unit()),
            Column.code("fec", "inner FEC", field(KIND, "sat_fec_inner"),
                    ofMedium("ter_fec_inner", "cab_fec_inner", "sat_fec_inner")),
            Column.code("modulation", "modulation", field(KIND, "sat_modulation"),
                    ofMedium("ter_modulation", "cab_modulation", "sat_modulation")),
            Column.code("bandwidth", "bandwidth", field(KIND, "ter_bandwidth"), ofMedium("ter_bandwidth", null, null)),
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

    /** The name of the mode of the medium; null if the mode is not known. */
    private static String standard(Record stream) {
        long medium = MEDIUM.number(stream);
        if (medium < TERRESTRIAL || medium > SATELLITE) {
            return "medium " + medium;
        }
        Field mode = MODES[(int) medium];
        long number = mode.number(stream);
        return mode.codes().stream().filter(code -> code.number() == number).map(Field.Code::name).findFirst()
                .orElse(null);
    }

    /** The first letter of the name: horizontal, vertical, left or right. */
    private static String polarization(long number) {
        return SAT_POLARIZATION.codes().stream().filter(code -> code.number() == number)
                .map(code -> code.name().substring(0, 1).toUpperCase(Locale.ROOT)).findFirst()
                .orElse(Long.toString(number));
    }

    private static OptionalLong polarization(String text) {
        return SAT_POLARIZATION.codes().stream()
                .filter(code -> text.equalsIgnoreCase(code.name())
                        || text.equalsIgnoreCase(code.name().substring(0, 1)))
                .mapToLong(Field.Code::number).findFirst();
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
