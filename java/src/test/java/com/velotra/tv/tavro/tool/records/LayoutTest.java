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
}
