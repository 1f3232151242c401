package com.velotra.tv.tavro.tool.listing;

import static com.velotra.tv.tavro.tool.listing.Columns.column;
import static com.velotra.tv.tavro.tool.listing.Columns.field;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.List;
import java.util.Locale;
import java.util.Map;
import java.util.OptionalLong;
import java.util.TreeMap;
import java.util.stream.Collectors;

/** The computed columns of satellites. */
final class SatelliteColumns {
    private static final Kind KIND = Kind.SATELLITES;
    private static final Field MASK = field(KIND, "mask");
    private static final Field NAME = field(KIND, "name");
    private static final Field LOW = field(KIND, "lnb_low_frequency");
    private static final Field HIGH = field(KIND, "lnb_high_frequency");
    private static final Field DISEQC_TYPE = field(KIND, "diseqc_type");
    private static final Field PORT = field(KIND, "diseqc_port");
    private static final Field BURST = field(KIND, "tone_burst");
    private static final Field ORBITAL_POSITION = field(KIND, "orbital_position");
    private static final Map<String, String> LNB_KINDS = new TreeMap<>(Map.of("MaskLnbUniver", "universal",
            "MaskLnbSingcab", "single cable", "MaskLnbSingcabJess", "single cable, second generation"));
    private static final int TONE_BURST_ONLY = 0;
    private static final int COMMITTED_SWITCH = 2;
    private static final int NO_PORT = 255;

    static final Column POSITION = Column.code("position", "position", true,
            (satellite, references) -> ORBITAL_POSITION.number(satellite),
            tenths -> new OrbitalPosition((int) tenths).toString(), SatelliteColumns::position);

    static final List<Column> ALL = List.of(
            column(KIND, "record_id", "record"),
            POSITION,
            Column.flag("in_use", "in use", MASK, "MaskStatusOn"),
            Column.text("lnb", "LNB", (satellite, references) -> lnb(satellite)),
            Column.term("diseqc", "DiSEqC", (satellite, references) -> diseqc(satellite)));

    private SatelliteColumns() {}

    /** What a satellite is called: its name, or else its position. */
    static String title(Record satellite) {
        String name = NAME.format(satellite);
        return name.isEmpty() ? POSITION.text(satellite, null) : name;
    }

    /** A position as in S19.2E, the S of which may be left out. */
    static OptionalLong position(String text) {
        String upper = text.toUpperCase(Locale.ROOT);
        try {
            return OptionalLong.of(OrbitalPosition.parse(upper.startsWith("S") ? upper : "S" + upper).tenths());
        } catch (IllegalArgumentException e) {
            return OptionalLong.empty();
        }
    }

    private static String lnb(Record satellite) {
        long low = LOW.number(satellite);
        long high = HIGH.number(satellite);
        String oscillators = low == 0 && high == 0 ? "" : high == 0 ? low + " MHz" : low + "/" + high + " MHz";
        String text = (lnbKind(MASK.number(satellite)) + " " + oscillators).strip();
        return text.isEmpty() ? null : text;
    }

    private static String lnbKind(long mask) {
        return LNB_KINDS.entrySet().stream().filter(kind -> (mask & Column.mask(MASK, kind.getKey())) != 0)
                .map(Map.Entry::getValue).collect(Collectors.joining(", "));
    }

    // As the library passes it to Java: the type of the switch decides which field counts.
    private static String diseqc(Record satellite) {
        long type = DISEQC_TYPE.number(satellite);
        long port = PORT.number(satellite);
        long burst = BURST.number(satellite);
        if (type == COMMITTED_SWITCH) {
            return port == NO_PORT ? null : "port " + port;
        }
        return type != TONE_BURST_ONLY || burst > 1 ? null : burst == 0 ? "burst A" : "burst B";
    }
}
