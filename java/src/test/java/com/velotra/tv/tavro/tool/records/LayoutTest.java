package com.velotra.tv.tavro.tool.records;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import java.util.Arrays;
import java.util.List;
import java.util.Random;
import java.util.stream.Stream;
import org.junit.jupiter.api.Test;

/** The fields of the records as text. */
class LayoutTest {
    private static final int BROADCAST_TYPE = 38;
    private static final int MEDIUM = 5;

    /** Zero bytes, random bytes and random letters, for each kind and each value that selects a view. */
    private static Stream<Record> records() {
        Random random = new Random(12);
        return Stream.of(Kind.values()).flatMap(kind -> Stream.of(0, 1, 2, 3, 5, 7, 200).flatMap(view -> {
            byte[] zeros = new byte[kind.recordBytes()];
            byte[] bytes = zeros.clone();
            byte[] letters = zeros.clone();
            random.nextBytes(bytes);
            for (int i = 0; i < letters.length; i++) {
                letters[i] = (byte) (random.nextInt(8) == 0 ? 0 : 'a' + random.nextInt(26));
            }
            return Stream.of(zeros, bytes, letters).map(record -> {
                record[kind == Kind.SERVICES ? BROADCAST_TYPE : MEDIUM] = view.byteValue();
                return Record.of(kind, record);
            });
        }));
    }

    private static byte[] rebuilt(Record record, byte[] onto) {
        Layout layout = Layout.of(record.kind());
        layout.fields(record).forEach(field -> field.parse(field.format(record), onto));
        layout.parseRest(layout.rest(record), onto);
        return onto;
    }

    @Test
    void fieldsAndUnnamedBytesAreTheWholeRecord() {
        records().forEach(record -> {
            byte[] ones = new byte[record.kind().recordBytes()];
            Arrays.fill(ones, (byte) -1);
            assertArrayEquals(record.bytes(), rebuilt(record, new byte[ones.length]), record::toString);
            assertArrayEquals(record.bytes(), rebuilt(record, ones), record::toString);
        });
    }

    @Test
    void unnamedBytesAreRunsThatAreNotZero() {
        Layout layout = Layout.of(Kind.NETWORKS);
        byte[] bytes = new byte[304];
        assertEquals("", layout.rest(Record.of(Kind.NETWORKS, bytes)));
        bytes[7] = 1; // of a field
        bytes[8] = 0x0A;
        bytes[9] = (byte) 0xFF;
        bytes[12] = 1; // of a field
        bytes[300] = 0x10;
        bytes[302] = 0x20;
        assertEquals("8:0aff 300:10 302:20", layout.rest(Record.of(Kind.NETWORKS, bytes)));
    }

    @Test
    void unnamedBytesOfAnUnknownViewAreAllOfIt() {
        byte[] bytes = new byte[724];
        bytes[48] = 1;
        bytes[175] = 2;
        bytes[176] = 3; // of a field
        bytes[MEDIUM] = 9;
        assertEquals("48:01 175:02", Layout.of(Kind.STREAMS).rest(Record.of(Kind.STREAMS, bytes)));
        bytes[MEDIUM] = 1;
        assertEquals("175:02", Layout.of(Kind.STREAMS).rest(Record.of(Kind.STREAMS, bytes)));
    }

    @Test
    void malformedUnnamedBytesAreRefusedAndNothingIsWritten() {
        byte[] bytes = new byte[304];
        Arrays.fill(bytes, (byte) 7);
        byte[] before = bytes.clone();
        for (String text : List.of("8", "8:", ":0a", "x:0a", "-8:0a", "8:0", "8:zz", "8:0a 9")) {
            String wrong = text.substring(text.lastIndexOf(' ') + 1);
            assertRefused(
                    "'" + wrong + "' is not a run of unnamed bytes: write OFFSET:HEX, as in 105:0a0b", text, bytes);
        }
        assertRefused("'303:0a0b' ends after the record, which has 304 bytes", "303:0a0b", bytes);
        assertRefused("'9:0a0b' names byte 10, which belongs to a field of the record", "8:01 9:0a0b", bytes);
        assertArrayEquals(before, bytes);
    }

    private static void assertRefused(String message, String text, byte[] record) {
        assertEquals(message, assertThrows(IllegalArgumentException.class,
                () -> Layout.of(Kind.NETWORKS).parseRest(text, record)).getMessage(), text);
    }

    @Test
    void aTextWithoutItsTerminatorIsWrittenAsBytes() {
        byte[] bytes = new byte[304];
        Arrays.fill(bytes, 13, 45, (byte) 'x');
        Field name = Layout.of(Kind.NETWORKS).field("name").orElseThrow();
        assertEquals("0x" + "78".repeat(32), name.format(Record.of(Kind.NETWORKS, bytes)));
        bytes[44] = 0;
        assertEquals("x".repeat(31), name.format(Record.of(Kind.NETWORKS, bytes)));
        assertEquals("'" + "y".repeat(32) + "' is too long for the name: at most 31 bytes",
                assertThrows(IllegalArgumentException.class, () -> name.parse("y".repeat(32), bytes)).getMessage());
    }

    @Test
    void aTextIsShownUpToItsNul() {
        Field name = Layout.of(Kind.NETWORKS).field("name").orElseThrow();
        String leftOver = "0x4e65772000203010";
        byte[] bytes = new byte[Kind.NETWORKS.recordBytes()];
        name.parse(leftOver, bytes);
        Record record = Record.of(Kind.NETWORKS, bytes);
        assertEquals(List.of("New ", "\"New \" (" + leftOver + ")", leftOver + "00".repeat(24)),
                List.of(name.shown(record), name.describe(record), name.format(record)));
        String invalid = "0xff00" + "31".repeat(30);
        name.parse(invalid, bytes);
        Record other = Record.of(Kind.NETWORKS, bytes);
        assertEquals(List.of(invalid, '"' + invalid + '"'), List.of(name.shown(other), name.describe(other)));
    }

    @Test
    void aTextThatLooksLikeBytesIsWrittenAsBytes() {
        Record record = record(Kind.NETWORKS, "name=0x3078");
        assertEquals("0x3078" + "0".repeat(60), field(Kind.NETWORKS, "name").format(record));
        assertArrayEquals(new byte[] {'0', 'x', 0}, record.bytes(13, 3));
    }

    @Test
    void aTextThatARecordCannotHoldIsRefused() {
        assertWrong("the name cannot contain a NUL character", Kind.NETWORKS, "name=a\0b");
        assertWrong("the name cannot contain half of a surrogate pair", Kind.NETWORKS, "name=a\ud83d");
        assertWrong("'0x0' cannot be the name: 0x is followed by pairs of hexadecimal digits", Kind.NETWORKS,
                "name=0x0");
        assertWrong("'0x" + "00".repeat(33) + "' is too long for the name: at most 32 bytes", Kind.NETWORKS,
                "name=0x" + "00".repeat(33));
    }

    @Test
    void aSatelliteNameMayFillItsField() {
        byte[] bytes = new byte[412];
        Field name = Layout.of(Kind.SATELLITES).field("name").orElseThrow();
        name.parse("x".repeat(64), bytes);
        assertEquals("x".repeat(64), name.format(Record.of(Kind.SATELLITES, bytes)));
    }

    @Test
    void numbersAreParsedInDecimalAndHexadecimal() {
        byte[] bytes = new byte[412];
        Field position = Layout.of(Kind.SATELLITES).field("orbital_position").orElseThrow();
        for (String[] number : new String[][] {{"192", "192"}, {"-008", "-8"}, {"0x7fff", "32767"}, {"-0x8", "-8"},
                {"-32768", "-32768"}, {"010", "10"}}) {
            position.parse(number[0], bytes);
            assertEquals(number[1], position.format(Record.of(Kind.SATELLITES, bytes)));
        }
        for (String wrong : List.of("", "-", "0x", "32768", "-32769", "1.5", "x", "+1", "--1", "1 ",
                "99999999999999999999", "0xffffffffffffffff")) {
            assertEquals("'" + wrong + "' cannot be the orbital position: it must be a number from -32768 to 32767",
                    assertThrows(IllegalArgumentException.class, () -> position.parse(wrong, bytes)).getMessage());
        }
    }

    private static Field field(Kind kind, String name) {
        return Layout.of(kind).field(name).orElseThrow();
    }

    /** A record with the values of some fields, each written as NAME=VALUE. */
    private static Record record(Kind kind, String... values) {
        byte[] bytes = new byte[kind.recordBytes()];
        for (String value : values) {
            int equals = value.indexOf('=');
            field(kind, value.substring(0, equals)).parse(value.substring(equals + 1), bytes);
        }
        return Record.of(kind, bytes);
    }

    @Test
    void valuesAreDescribedWithNamesUnitsAndFlags() {
        for (String[] value : new String[][] {
                {"medium=3", "3 (satellite)"}, {"medium=9", "9"}, {"frequency=12187000", "12187000 kHz"},
                {"sat_symbol_rate=22000000", "22000000 Bd"}, {"sat_polarization=2", "2 (left)"},
                {"ter_bandwidth=3", "3 (8 MHz)"}, {"flags=2", "0x00000002 (BarkerChannel)"},
                {"flags=0", "0x00000000"}, {"flags=0x13", "0x00000013 (BarkerChannel, 0x11)"},
                {"name=A\u001bB\"", "\"A·B\"\""}}) {
            String name = value[0].substring(0, value[0].indexOf('='));
            assertEquals(value[1], field(Kind.STREAMS, name).describe(record(Kind.STREAMS, value[0])));
        }
        Field position = field(Kind.SATELLITES, "orbital_position");
        assertEquals("-8 (S0.8W)", position.describe(record(Kind.SATELLITES, "orbital_position=-8")));
        Field channel = field(Kind.SERVICES, "channel_id");
        assertEquals("0x001c0000 (major 7)",
                channel.describe(record(Kind.SERVICES, "broadcast_type=2", "channel_id=0x1c0000")));
        assertEquals("0x001c0300 (major 7, minor 3)",
                channel.describe(record(Kind.SERVICES, "broadcast_type=5", "channel_id=0x1c0300")));
        assertEquals("0x001c0000", channel.describe(record(Kind.SERVICES, "channel_id=0x1c0000")));
    }

    @Test
    void aNameOfACodeOrItsBeginningIsParsed() {
        for (String[] name : new String[][] {{"satellite", "3"}, {"SATELLITE", "3"}, {"c", "2"}}) {
            assertEquals(name[1], field(Kind.STREAMS, "medium").format(record(Kind.STREAMS, "medium=" + name[0])));
        }
        assertEquals("1", field(Kind.STREAMS, "cab_mode").format(record(Kind.STREAMS, "cab_mode=DVB-C")));
        String choice = ": it must be a number from 0 to 255, or one of: ";
        assertWrong("'x' cannot be the medium" + choice + "terrestrial, cable, satellite", Kind.STREAMS, "medium=x");
        assertWrong("'' cannot be the medium" + choice + "terrestrial, cable, satellite", Kind.STREAMS, "medium=");
        assertWrong("'256' cannot be the medium" + choice + "terrestrial, cable, satellite", Kind.STREAMS,
                "medium=256");
        assertWrong("'' cannot be the extended DiSEqC type: it must be a number from 0 to 4294967295, or one of: "
                + "extended switch", Kind.SATELLITES, "diseqc_type_ex=");
        assertWrong("'audio' cannot be the service type" + choice + "audio and video, audio", Kind.SERVICES,
                "service_type=audio");
    }

    private static void assertWrong(String message, Kind kind, String value) {
        assertEquals(message,
                assertThrows(IllegalArgumentException.class, () -> record(kind, value)).getMessage());
    }

    @Test
    void flagsAreSetAndClearedByTheirKeys() {
        assertEquals("0x00000819", field(Kind.SERVICES, "network_mask").format(record(Kind.SERVICES,
                "network_mask=0x1f", "network_mask=+VnetScrambled -VnetActive,-vnetepg -VnetEpg",
                "network_mask=-ventchannelblock", "network_mask=+VnetVisible")));
        assertWrong("'+Vnet' is not a flag with + or - before it; the flags are NwlFavNetworkCandidate, "
                + "NwlFavNetwork", Kind.NETWORKS, "flags=+Vnet");
        assertWrong("'NwlFavNetwork' is not a flag with + or - before it; the flags are NwlFavNetworkCandidate, "
                + "NwlFavNetwork", Kind.NETWORKS, "flags=+NwlFavNetwork NwlFavNetwork");
        assertWrong("'x' cannot be the flags: it must be a number from 0 to 4294967295; the flags are "
                + "NwlFavNetworkCandidate, NwlFavNetwork", Kind.NETWORKS, "flags=x");
    }

    @Test
    void aFieldHasItsPlaceInTheStructureAndItsJavaKeys() {
        Field polarization = field(Kind.STREAMS, "sat_polarization");
        assertEquals("u_tuner.t_sat.e_pol", polarization.path());
        assertEquals("[TunerPolarizaTion]", polarization.keys().toString());
        assertEquals(Field.Rule.NUMBER, polarization.keys().get(0).rule());
        assertEquals(List.of(new Field.Flag(2, "NwlFavNetworkCandidate"), new Field.Flag(4, "NwlFavNetwork")),
                field(Kind.NETWORKS, "flags").flags());
        assertEquals(new Field.Code(5, 10000, "10 MHz"), field(Kind.STREAMS, "ter_bandwidth").codes().get(4));
        assertEquals("u_specific.t_dvb.aui2_code[2]", field(Kind.SERVICES, "region_code_3").path());
        Field shared = field(Kind.SERVICES, "short_name");
        assertEquals("u_specific.t_dvb.t_common.s_svc_name", shared.path());
        assertEquals("u_specific.t_dtmb.t_common.s_svc_name",
                shared.path(record(Kind.SERVICES, "broadcast_type=DTMB")));
        assertEquals("[View[value=2, label=DVB, member=u_specific.t_dvb], View[value=7, label=DTMB, "
                + "member=u_specific.t_dtmb]]", shared.views().toString());
    }

    @Test
    void runsAreEveryByteOnce() {
        records().forEach(record -> {
            int end = 0;
            for (Layout.Run run : Layout.of(record.kind()).runs(record)) {
                assertEquals(end, run.offset());
                end += run.width();
            }
            assertEquals(record.kind().recordBytes(), end);
        });
    }

    @Test
    void runsNameReservedBytesAndThoseOfAnUnknownView() {
        List<Layout.Run> known = Layout.of(Kind.STREAMS).runs(record(Kind.STREAMS, "medium=cable"));
        assertEquals("Run[offset=64, width=16, field=Optional.empty, path=u_tuner.t_cab.aui1_reserved_16]",
                known.stream().filter(run -> run.offset() == 64).findFirst().orElseThrow().toString());
        List<Layout.Run> unknown = Layout.of(Kind.STREAMS).runs(record(Kind.STREAMS, "medium=9"));
        assertEquals("Run[offset=48, width=128, field=Optional.empty, path=]",
                unknown.stream().filter(run -> run.offset() == 48).findFirst().orElseThrow().toString());
    }
}
