package com.velotra.tv.tavro.tool.listing;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.util.ArrayList;
import java.util.List;
import java.util.Optional;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import org.junit.jupiter.api.Test;

class ColumnsTest {
    private final List<String> read = new ArrayList<>();

    private Optional<RecordList> list(Kind kind, int listId) {
        read.add(kind + " " + listId);
        return switch (kind) {
            case STREAMS -> Optional.of(RecordList.of(kind, listId, "", List.of(
                    Records.of(kind, "record_id=1", "medium=1", "frequency=505833", "ter_mode=2", "ter_bandwidth=3",
                            "nwl_id=1", "nwl_record_id=2", "satl_id=1", "satl_record_id=3"))));
            case NETWORKS -> Optional.of(RecordList.of(kind, listId, "", List.of(
                    Records.of(kind, "record_id=2", "network_id=8468"))));
            case SATELLITES -> Optional.of(RecordList.of(kind, listId, "", List.of(
                    Records.of(kind, "record_id=3", "orbital_position=-50"))));
            default -> Optional.empty();
        };
    }

    private static String cells(Kind kind, Record record, References references, String... columns) {
        return Stream.of(columns).map(name -> Columns.of(kind).get(name).orElseThrow().cell(record, references))
                .collect(Collectors.joining(" | "));
    }

    @Test
    void referencesOfAServiceAreResolvedThroughItsStream() {
        References references = References.in(this::list);
        Record service = Records.of(Kind.SERVICES, "record_id=9", "tsl_id=1", "tsl_record_id=1");
        assertEquals("1,1 | 505833 | 505833 | DVB-T2 | 8 MHz | - | - | network 8468 | 8468 | S5.0W | S5.0W",
                cells(Kind.SERVICES, service, references, "stream_record", "stream", "freq", "standard", "bw", "pol",
                        "sr", "network", "nid", "satellite", "position"));
    }

    @Test
    void aNameEndsAtItsNulAlsoIfOtherBytesFollow() {
        assertEquals("New", cells(Kind.NETWORKS, Records.of(Kind.NETWORKS, "name=0x4e657700002031"), null, "name"));
    }

    @Test
    void aListIsReadOnceAndOnlyWhenItIsNeeded() {
        References references = References.in(this::list);
        Record service = Records.of(Kind.SERVICES, "tsl_id=1", "tsl_record_id=1");
        cells(Kind.SERVICES, service, references, "name", "stream_record", "lcn");
        assertEquals(List.of(), read);
        cells(Kind.SERVICES, service, references, "freq", "sr", "satellite", "position", "satellite");
        assertEquals(List.of("streams 1", "satellites 1"), read);
    }

    @Test
    void aReferenceToNothingHasNoValue() {
        References references = References.in((kind, listId) -> Optional.empty());
        Record service = Records.of(Kind.SERVICES, "tsl_id=3", "tsl_record_id=1");
        assertEquals("3,1 | - | - | - | - | -", cells(Kind.SERVICES, service, references,
                "stream_record", "stream", "freq", "network", "satellite", "network_record"));
        Column frequency = Columns.of(Kind.SERVICES).get("freq").orElseThrow();
        assertNull(frequency.json(service, references));
        assertEquals(Column.NONE, frequency.number(service, references));
    }

    @Test
    void theMediaOfStreamsShareColumns() {
        String[] columns = {"standard", "freq", "pol", "sr", "fec", "mod", "bw"};
        assertEquals("DVB-T | 505833 | - | - | 2/3 | QAM/64 | 8 MHz", cells(Kind.STREAMS, Records.of(Kind.STREAMS,
                "medium=1", "frequency=505833",
                "ter_mode=1", "ter_fec_inner=3", "ter_modulation=5", "ter_bandwidth=3"), null,
                columns));
        assertEquals("DVB-C | 330000 | - | 6900000 | 0 | QAM/256 | -", cells(Kind.STREAMS, Records.of(Kind.STREAMS,
                "medium=2", "frequency=330000", "cab_mode=1", "cab_symbol_rate=6900000", "cab_modulation=7"), null,
                columns));
        assertEquals("DVB-S2 | 12187000 | V | 27500000 | 9/10 | PSK/8 | -", cells(Kind.STREAMS, Records.of(Kind.STREAMS,
                "medium=3", "frequency=12187000", "sat_mode=2", "sat_polarization=1", "sat_symbol_rate=27500000",
                "sat_fec_inner=11", "sat_modulation=2"), null, columns));
        assertEquals("medium 4 | 1 | - | - | - | - | -", cells(Kind.STREAMS,
                Records.of(Kind.STREAMS, "medium=4", "frequency=1"), null, columns));
        assertEquals("- | 4294967295 | 17 | 0 | 0 | 0 | -", cells(Kind.STREAMS, Records.of(Kind.STREAMS, "medium=3",
                "frequency=4294967295", "sat_mode=3", "sat_polarization=17"), null, columns));
    }

    @Test
    void theSwitchOfASatelliteDependsOnItsType() {
        for (String[] one : new String[][] {
            {"diseqc_type=2", "diseqc_port=2", "port 2"}, {"diseqc_type=2", "diseqc_port=255", "-"},
            {"diseqc_type=0", "tone_burst=0", "burst A"}, {"diseqc_type=0", "tone_burst=1", "burst B"},
            {"diseqc_type=0", "tone_burst=255", "-"}, {"diseqc_type=1", "diseqc_port=2", "-"}}) {
            assertEquals(one[2], cells(Kind.SATELLITES, Records.of(Kind.SATELLITES, one[0], one[1]), null, "diseqc"));
        }
    }

    @Test
    void recordsWithoutNamesHaveTitles() {
        assertEquals("service 7", Titles.of(Records.of(Kind.SERVICES, "service_id=7")));
        assertEquals("Uno", Titles.of(Records.of(Kind.SERVICES, "service_id=7", "name=Uno")));
        assertEquals("12187000 H", Titles.of(Records.of(Kind.STREAMS, "medium=3", "frequency=12187000")));
        assertEquals("330000", Titles.of(Records.of(Kind.STREAMS, "medium=2", "frequency=330000")));
        assertEquals("network 1", Titles.of(Records.of(Kind.NETWORKS, "network_id=1")));
        assertEquals("S19.2E", Titles.of(Records.of(Kind.SATELLITES, "orbital_position=192")));
    }

    @Test
    void everyFieldOfEveryKindIsAColumn() {
        for (Kind kind : Kind.values()) {
            Layout.of(kind).fields().forEach(field ->
                    assertTrue(Columns.of(kind).get(field.name()).isPresent(), field.name()));
        }
    }

    @Test
    void fieldsOfAnotherBroadcastTypeHaveNoValue() {
        Record dtmb = Records.of(Kind.SERVICES, "broadcast_type=7", "dtmb_free_ca_mode=1", "channel_id=0x00100000");
        assertEquals("- | - | scrambled | 4 | 0x00100000", cells(Kind.SERVICES, dtmb, null,
                "lcn", "dvb_free_ca_mode", "dtmb_free_ca_mode", "major", "channel_id"));
    }
}
