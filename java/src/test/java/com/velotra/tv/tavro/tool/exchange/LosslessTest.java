package com.velotra.tv.tavro.tool.exchange;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.records.Field;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.io.IOException;
import java.io.StringWriter;
import java.nio.charset.StandardCharsets;
import java.util.ArrayList;
import java.util.HexFormat;
import java.util.List;
import java.util.Optional;
import java.util.Random;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.EnumSource;

/** Lists as CSV and JSON and back, byte for byte. */
class LosslessTest {
    private static final int LIST = 7;

    /** Names that CSV, JSON, spreadsheets and terminals treat in a special way. */
    private static final List<String> NAMES = List.of(
            "", "plain", "with \"quotes\"", "\"", "a,b", "a;b", "a\tb", "two\nlines", "two\r\nlines", "\r", "\n",
            " blank ", "'", "'quoted'", "''", "007", "1e5", "-1", "+49", "=SUM(A1)", "@A1", "1-2", "MAR1", "May 7",
            "TRUE", "0x",
            "0x41", "0xzz", "3sat", "\\", "\\n", "null", "{}", "</script>", "أهلا وسهلا", "שלום", "\u202Eevil",
            "日本テレビ", "𝄞 clef", "😀", "bell\u0007", "\u001B[31m",
            "c1\u0085\u009B", "\uFEFFmark", "\u2028", "\uFFFE",
            "ÄÖÜß", "x".repeat(30));

    private static RecordList list(Kind kind, List<Record> records) {
        return RecordList.of(kind, LIST, "the name", records);
    }

    private static String csv(RecordList list) throws IOException {
        StringBuilder text = new StringBuilder();
        CsvWriter.write(list, text);
        return text.toString();
    }

    private static String json(RecordList list) throws IOException {
        StringWriter text = new StringWriter();
        JsonWriter.write(List.of(list), text);
        return text.toString();
    }

    private static Source source(String text) {
        return new Source("file", "file", text.getBytes(StandardCharsets.UTF_8));
    }

    /** Imports a text into an empty list, and checks that every byte is restored. */
    private static void assertRestored(RecordList list, String text) {
        assertTrue(ListFormats.isOne(source(text)), text);
        List<ListTable> tables = ListFormats.read(source(text), Optional.empty());
        assertEquals(1, tables.size());
        RecordList empty = RecordList.of(list.kind(), LIST, "the name", List.of());
        TableUpdate update = TableUpdate.of(empty, tables.get(0), false);
        assertEquals(List.of(), update.problems());
        for (int i = 0; i < list.size(); i++) {
            assertArrayEquals(list.get(i).bytes(), update.after().get(i).bytes(), "record " + i);
        }
        assertEquals(list, update.after());
        assertEquals(list.size() + " added", update.toString().replaceAll(".*: (\\d+ added),.*", "$1"));
    }

    private static void assertLossless(RecordList list) throws IOException {
        assertRestored(list, csv(list));
        assertRestored(list, json(list));
    }

    /** Returns records with distinct ids and random bytes; every value of the byte that selects a view occurs. */
    private static List<Record> random(Kind kind) {
        Random random = new Random(1);
        List<Record> records = new ArrayList<>();
        for (int id = 0; id < 320; id++) {
            byte[] bytes = new byte[kind.recordBytes()];
            random.nextBytes(bytes);
            for (int i = 0; i < bytes.length; i++) {
                bytes[i] = random.nextInt(4) == 0 ? 0 : bytes[i];
            }
            int selector = kind == Kind.SERVICES ? 38 : 5; // broadcast type; medium, or any byte
            bytes[selector] = (byte) (id < 256 ? id : id % 8);
            bytes[kind.idOffset()] = (byte) id;
            bytes[kind.idOffset() + 1] = (byte) (id >> 8);
            records.add(Record.of(kind, bytes));
        }
        return records;
    }

    @ParameterizedTest
    @EnumSource
    void randomBytesAreRestored(Kind kind) throws IOException {
        assertLossless(list(kind, random(kind)));
    }

    /** Returns a record for each name, and for bytes that are no texts as records have them. */
    private static List<Record> named(Kind kind) throws IOException {
        Field name = Layout.of(kind).field("name").orElseThrow();
        Field id = Layout.of(kind).field("record_id").orElseThrow();
        List<Record> records = new ArrayList<>();
        for (String text : NAMES) {
            byte[] bytes = new byte[kind.recordBytes()];
            id.parse(Integer.toString(records.size() + 1), bytes);
            byte[] utf8 = text.getBytes("CESU-8");
            System.arraycopy(utf8, 0, bytes, name.offset(), utf8.length);
            records.add(Record.of(kind, bytes));
        }
        for (String hex : List.of("c3", "f09d849e", "eda080", "c080", "610062")) {
            byte[] raw = HexFormat.of().parseHex(hex);
            byte[] bytes = new byte[kind.recordBytes()];
            id.parse(Integer.toString(records.size() + 1), bytes);
            System.arraycopy(raw, 0, bytes, name.offset(), raw.length);
            records.add(Record.of(kind, bytes));
        }
        return records;
    }

    @ParameterizedTest
    @EnumSource
    void namesOfAllSortsAreRestored(Kind kind) throws IOException {
        assertLossless(list(kind, named(kind)));
    }

    @ParameterizedTest
    @EnumSource
    void noControlCharacterExceptLineFeedsIsWritten(Kind kind) throws IOException {
        for (String text : List.of(csv(list(kind, named(kind))), json(list(kind, named(kind))))) {
            assertEquals(List.of(), text.chars().filter(c -> c != '\n' && Character.isISOControl(c)).boxed().toList());
        }
    }

    @Test
    void textsThatBecomeDatesInAnyOfThreeLanguagesAreMarked() {
        for (String date : List.of("MAR1", "May 7", "Mai 1", "1. Mai", "Okt 3", "M\u00E4r 1", "M\u00C4RZ 3", "Dez-4",
                "f\u00E9vr. 2", "Avril 3", "ao\u00FBt 5")) {
            assertEquals("'" + date, SpreadsheetCell.of(date));
        }
        for (String name : List.of("Mai", "Arte 3", "MTV 80", "D\u00E9j\u00E0 vu 1")) {
            assertEquals(name, SpreadsheetCell.of(name));
        }
    }

    @Test
    void aListWithoutRecordsIsRestored() throws IOException {
        assertLossless(list(Kind.NETWORKS, List.of()));
    }

    @Test
    void csvHasARowPerRecordAndAColumnPerField() throws IOException {
        byte[] bytes = new byte[304];
        bytes[4] = 9;
        bytes[10] = (byte) 0x85;
        bytes[13] = 'T';
        bytes[14] = ',';
        bytes[15] = '5';
        bytes[50] = 1;
        bytes[51] = 2;
        assertEquals("kind,list_id,flags,record_id,nwl_id,network_id,version,name,unnamed_bytes\n"
                + "networks,7,0x00000000,9,0,133,0,\"T,5\",'50:0102\n",
                csv(list(Kind.NETWORKS, List.of(Record.of(Kind.NETWORKS, bytes)))));
    }

    @Test
    void jsonHasALinePerRecordAndAMemberPerField() throws IOException {
        byte[] bytes = new byte[304];
        bytes[4] = 9;
        bytes[13] = 'T';
        assertEquals("""
                {
                  "format": "tavro lists",
                  "version": 1,
                  "lists": [
                    {
                      "kind": "networks",
                      "list_id": 7,
                      "name": "the name",
                      "records": [
                        {"flags":"0x00000000","record_id":9,"nwl_id":0,"network_id":0,"version":0,"name":"T",\
                "unnamed_bytes":""}
                      ]
                    }
                  ]
                }
                """, json(list(Kind.NETWORKS, List.of(Record.of(Kind.NETWORKS, bytes)))));
    }
}
