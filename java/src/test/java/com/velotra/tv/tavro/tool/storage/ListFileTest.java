package com.velotra.tv.tavro.tool.storage;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.List;
import java.util.Random;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.function.Executable;
import org.junit.jupiter.api.io.TempDir;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.EnumSource;

/** List files: reading gives what was written, or says what is wrong. */
class ListFileTest {
    @TempDir
    Path folder;

    /** Records with random bytes and the ids 1, 2, … */
    static RecordList list(Kind kind, int listId, String name, int records) {
        byte[] bytes = new byte[records * kind.recordBytes()];
        new Random(listId).nextBytes(bytes);
        for (int i = 0; i < records; i++) {
            setId(bytes, kind, i, i + 1);
        }
        return RecordList.of(kind, listId, name, bytes);
    }

    private static void setId(byte[] bytes, Kind kind, int index, int id) {
        int offset = index * kind.recordBytes() + kind.idOffset();
        bytes[offset] = (byte) id;
        bytes[offset + 1] = (byte) (id >> 8);
    }

    private static void assertSame(RecordList expected, RecordList found) {
        assertEquals(expected.kind(), found.kind());
        assertEquals(expected.listId(), found.listId());
        assertEquals(expected.name(), found.name());
        assertEquals(expected, found);
    }

    private static void assertFails(String message, Executable action) {
        assertEquals(message, assertThrows(Failure.class, action).getMessage());
    }

    @ParameterizedTest
    @EnumSource
    void whatIsWrittenIsReadAgain(Kind kind) throws IOException {
        for (int records : new int[] {0, 1, 300}) {
            RecordList list = list(kind, 65535, "name ' \" \n\u202E\uD83D\uDCFA".repeat(1 + records), records);
            Path file = folder.resolve("list \uD83D\uDCFA");
            ListFile.write(file, list);
            assertTrue(ListFile.isOne(file));
            assertSame(list, ListFile.read(file));
            assertSame(list, ListFile.read(file, kind));
            assertSame(list, ListFile.readBytes(Files.readAllBytes(file), "-"));
        }
    }

    @Test
    void theOrderOfRecordsIsKept() {
        byte[] bytes = new byte[3 * Kind.NETWORKS.recordBytes()];
        int[] ids = {9, 2, 65534};
        for (int i = 0; i < ids.length; i++) {
            setId(bytes, Kind.NETWORKS, i, ids[i]);
        }
        ListFile.write(folder.resolve("list"), RecordList.of(Kind.NETWORKS, 1, "n", bytes));
        assertEquals(List.of(9, 2, 65534),
                ListFile.read(folder.resolve("list")).stream().map(record -> record.id()).toList());
    }

    @Test
    void otherFilesAreNotListFiles() throws IOException {
        assertFalse(ListFile.isOne(folder.resolve("missing")));
        assertFalse(ListFile.isOne(folder));
        assertFalse(ListFile.isOne(Path.of("/dev/null")));
        assertFalse(ListFile.isOne(Files.writeString(folder.resolve("text"), "a".repeat(200))));
        assertFalse(ListFile.isOne(Files.writeString(folder.resolve("short"), "SQLite format 3\0")));
    }

    @Test
    void aFileThatCannotBeReadIsDescribed() throws IOException {
        Path file = folder.resolve("list");
        String cannotRead = "cannot read list file " + file + ": ";
        assertFails(cannotRead + "no such file", () -> ListFile.read(file));
        Files.writeString(file, "no list");
        String isNone = "it is not a list file; store one with ./tavro store";
        assertFails(cannotRead + isNone, () -> ListFile.read(file));
        assertFails("cannot read list file -: " + isNone, () -> ListFile.readBytes(new byte[0], "-"));
        ListFile.write(file, list(Kind.NETWORKS, 4, "n", 20));
        assertFails(cannotRead + "it has a network list, not a service list; use --kind networks",
                () -> ListFile.read(file, Kind.SERVICES));
        byte[] good = Files.readAllBytes(file);
        byte[] damaged = good.clone();
        damaged[good.length - 100] ^= 1;
        Files.write(file, damaged);
        assertTrue(ListFile.isOne(file));
        assertFails(cannotRead + "it is damaged; store the list again", () -> ListFile.read(file));
        Files.write(file, Arrays.copyOf(good, 8192));
        assertFails(cannotRead + "it is damaged; store the list again", () -> ListFile.read(file));
        byte[] later = good.clone();
        later[63] = 3; // user_version
        Files.write(file, later);
        assertFails(cannotRead + "it was written by another version; use that version", () -> ListFile.read(file));
        assertFails("cannot read list file " + folder + ": Is a directory; move it away, or choose another path",
                () -> ListFile.read(folder));
        assertFails("cannot read list file /dev/null: it is not a regular file; choose another path",
                () -> ListFile.read(Path.of("/dev/null")));
    }

    @Test
    void aListThatCannotBeWrittenLeavesTheOldFile() throws IOException {
        Path file = folder.resolve("list");
        RecordList old = list(Kind.SATELLITES, 4, "old", 2);
        ListFile.write(file, old);
        for (int id : new int[] {1, 65535}) {
            byte[] bytes = list(Kind.SATELLITES, 4, "new", 2).bytes();
            setId(bytes, Kind.SATELLITES, 1, id);
            RecordList wrong = RecordList.of(Kind.SATELLITES, 4, "new", bytes);
            assertFails("cannot write list file " + file + ": record id " + id
                    + (id == 1 ? " occurs twice" : " is not valid"), () -> ListFile.write(file, wrong));
        }
        assertSame(old, ListFile.read(file));
        try (var files = Files.list(folder)) {
            assertEquals(List.of(file), files.toList());
        }
        Path missing = folder.resolve("missing/list");
        assertFails("cannot write list file " + missing + ": No such file or directory; check the path, or choose"
                + " another path", () -> ListFile.write(missing, old));
    }
}
