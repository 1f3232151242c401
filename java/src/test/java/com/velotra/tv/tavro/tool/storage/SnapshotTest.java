package com.velotra.tv.tavro.tool.storage;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assumptions.assumeFalse;

import com.velotra.tv.tavro.services.channellist.TvList;
import com.velotra.tv.tavro.tool.ToolProcess;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.PosixFilePermissions;
import java.time.Instant;
import java.time.temporal.ChronoUnit;
import java.util.Arrays;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.TreeMap;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Reading a storage directory without the natives, and the access of the library to its own. */
class SnapshotTest {
    /** A list database that another process has made. */
    private static byte[] database;

    @TempDir
    Path folder;

    private Path home;

    @BeforeAll
    static void makeDatabase(@TempDir Path folder) throws Exception {
        storeOwn(Kind.SATELLITES, 3, ListFileTest.list(Kind.SATELLITES, 3, "two", 2), folder.resolve("list"));
        Access.readOnly(); // closes the database
        Path copy = Files.copy(Storage.directory().resolve("lists.db"), folder.resolve("lists.db"));
        Access.readWrite();
        sql(folder, copy, "UPDATE lists SET name = 'two'; DELETE FROM lists WHERE kind <> 4 OR list_id <> 3;"
                + "DELETE FROM records WHERE kind <> 4 OR list_id <> 3; PRAGMA journal_mode = DELETE; VACUUM;"
                + "PRAGMA journal_mode = WAL");
        database = Files.readAllBytes(copy);
    }

    @BeforeEach
    void copyDatabase() throws IOException {
        home = Files.createDirectory(folder.resolve("home"));
        Files.write(home.resolve("lists.db"), database);
    }

    @AfterEach
    void endAccess() {
        Access.end();
    }

    private Map<Path, String> files() throws IOException {
        Map<Path, String> files = new TreeMap<>();
        try (var paths = Files.walk(folder)) {
            for (Path path : paths.toList()) {
                files.put(path, Files.getLastModifiedTime(path) + (Files.isDirectory(path) ? "" : " "
                        + Arrays.hashCode(Files.readAllBytes(path))));
            }
        }
        return files;
    }

    private static void sql(Path folder, Path database, String statements) throws Exception {
        assertEquals(0, ToolProcess.run(List.of("sqlite3", database.toString(), statements), folder,
                folder.resolve("out"), Map.of()));
    }

    private void sql(String statements) throws Exception {
        sql(folder, home.resolve("lists.db"), statements);
    }

    private void assertFails(String message) {
        assertEquals(message, assertThrows(Failure.class, () -> Snapshot.open(home).close()).getMessage());
    }

    private static void storeOwn(Kind kind, int listId, RecordList list, Path file) {
        ListFile.write(file, list);
        TvList lists = kind.lists();
        if (lists.exists(listId)) {
            lists.delete(listId);
        }
        lists.open(listId, file.toString());
    }

    @Test
    void anyDirectoryIsReadAndNotChanged() throws Exception {
        Map<Path, String> before = files();
        try (Snapshot snapshot = Snapshot.open(home)) {
            List<ListEntry> lists = snapshot.lists();
            assertEquals(1, lists.size());
            ListEntry list = lists.get(0);
            assertEquals(Kind.SATELLITES, list.kind());
            assertEquals(3, list.listId());
            assertEquals("two", list.name());
            assertEquals(2, list.records());
            assertEquals(Optional.of(list), snapshot.entry(Kind.SATELLITES, 3));
            assertEquals(Optional.empty(), snapshot.entry(Kind.SATELLITES, 4));
            assertEquals(Optional.empty(), snapshot.entry(Kind.NETWORKS, 3));
            RecordList records = snapshot.list(Kind.SATELLITES, 3).orElseThrow();
            assertEquals(2, records.size());
            assertEquals(2, records.get(1).id());
            assertEquals(Optional.empty(), snapshot.list(Kind.SATELLITES, 4));
        }
        assertEquals(before, files());
    }

    @Test
    void aDirectoryWithoutADatabaseHasNoLists() throws Exception {
        Files.delete(home.resolve("lists.db"));
        Map<Path, String> before = files();
        try (Snapshot snapshot = Snapshot.open(home)) {
            assertEquals(List.of(), snapshot.lists());
            assertEquals(Optional.empty(), snapshot.list(Kind.SERVICES, 1));
        }
        assertEquals(before, files());
    }

    @Test
    void everyListOfTheOwnDirectoryIsReadAsTheNativesReadIt() throws IOException {
        for (Kind kind : Kind.values()) {
            RecordList list = ListFileTest.list(kind, 40, "n", 50);
            storeOwn(kind, 40, list, folder.resolve("list"));
            for (boolean readOnly : new boolean[] {false, true}) {
                if (readOnly) {
                    Access.readOnly();
                }
                assertEquals(list, StoredLists.read(kind, 40));
                try (Snapshot snapshot = Snapshot.open(Storage.directory())) {
                    assertEquals(list, snapshot.list(kind, 40).orElseThrow());
                }
            }
            Access.readWrite();
        }
    }

    @Test
    void theTimeOfTheLastChangeIsKnownUnlessTheDatabaseIsOld() throws Exception {
        Instant before = Instant.now().truncatedTo(ChronoUnit.MILLIS);
        storeOwn(Kind.NETWORKS, 44, ListFileTest.list(Kind.NETWORKS, 44, "n", 1), folder.resolve("list"));
        try (Snapshot snapshot = Snapshot.open(Storage.directory())) {
            Instant changed = snapshot.entry(Kind.NETWORKS, 44).orElseThrow().changed().orElseThrow();
            assertFalse(changed.isBefore(before) || changed.isAfter(Instant.now()), changed.toString());
        }
        sql("ALTER TABLE lists DROP COLUMN changed; PRAGMA user_version = 1");
        try (Snapshot snapshot = Snapshot.open(home)) {
            assertEquals(Optional.empty(), snapshot.entry(Kind.SATELLITES, 3).orElseThrow().changed());
        }
    }

    @Test
    void theLibraryOnlyReadsUntilItMayWriteAgain() throws IOException {
        RecordList list = ListFileTest.list(Kind.SERVICES, 41, "n", 3);
        storeOwn(Kind.SERVICES, 41, list, folder.resolve("list"));
        TvList lists = Kind.SERVICES.lists();
        for (int round = 0; round < 3; round++) {
            Access.readOnly();
            assertThrows(RuntimeException.class, () -> lists.clean(41));
            assertEquals(list, StoredLists.read(Kind.SERVICES, 41));
            Access.readWrite();
            lists.clean(41);
            assertEquals(0, StoredLists.read(Kind.SERVICES, 41).size());
            storeOwn(Kind.SERVICES, 41, list, folder.resolve("list"));
        }
    }

    @Test
    void aSnapshotThatIsOpenFirstDoesNotKeepTheLibraryFromWriting() throws IOException {
        storeOwn(Kind.SERVICES, 42, ListFileTest.list(Kind.SERVICES, 42, "n", 3), folder.resolve("list"));
        Access.readOnly();
        Access.end(); // the library has closed the storage
        try (Snapshot snapshot = Snapshot.open(Storage.directory())) {
            assertEquals(3, snapshot.list(Kind.SERVICES, 42).orElseThrow().size());
            Kind.SERVICES.lists().clean(42);
            assertEquals(3, snapshot.list(Kind.SERVICES, 42).orElseThrow().size());
        }
        Access.readOnly();
        try (Snapshot snapshot = Snapshot.open(Storage.directory())) {
            assertEquals(0, snapshot.list(Kind.SERVICES, 42).orElseThrow().size());
            assertEquals("close the snapshots of " + Storage.directory() + " first",
                    assertThrows(IllegalStateException.class, Access::readWrite).getMessage());
        }
        Access.readWrite();
    }

    @Test
    void aClosedSnapshotCannotBeUsed() {
        Snapshot snapshot = Snapshot.open(home);
        snapshot.close();
        snapshot.close();
        assertEquals("this snapshot is closed",
                assertThrows(IllegalStateException.class, snapshot::lists).getMessage());
        assertFalse(Snapshot.isOpenFor(home));
    }

    @Test
    void aDirectoryThatCannotBeReadIsDescribed() throws Exception {
        Path database = home.resolve("lists.db");
        String cannotRead = "cannot read the list database " + database + ": ";
        String startAnew = "; move the file away to start without lists, or use another storage directory";
        sql("PRAGMA user_version = 9");
        assertFails(cannotRead + "it was written by another version; use that version");
        sql("PRAGMA application_id = 9");
        assertFails("cannot read " + database + ": it is not a list database");
        Files.writeString(database, "no database");
        assertFails(cannotRead + "file is not a database" + startAnew);
        byte[] damaged = SnapshotTest.database.clone();
        Arrays.fill(damaged, 4096, damaged.length, (byte) 0x5A);
        Files.write(database, damaged);
        assertFails(cannotRead + "the file is damaged (database disk image is malformed)" + startAnew);
        Files.delete(database);
        Files.createDirectory(database);
        assertFails(cannotRead + "Is a directory; move it away, or use another storage directory");
        Files.delete(database);
        Files.delete(home);
        String elsewhere = "; set TAVRO_HOME to the one that holds your lists";
        assertFails("cannot read the storage directory " + home + ": no such directory" + elsewhere);
        Files.writeString(home, "");
        assertFails("cannot read the storage directory " + home + ": it is not a directory" + elsewhere);
    }

    @Test
    void aDamagedListIsDescribedAndOthersAreRead() throws Exception {
        sql("INSERT INTO lists (number, name, version, next_position) VALUES (4 << 16 | 9, 'bad', 1, 2);"
                + "INSERT INTO records (number, position, bytes) VALUES ((4 << 16 | 9) << 16 | 1, 1, x'00')");
        try (Snapshot snapshot = Snapshot.open(home)) {
            assertEquals(2, snapshot.lists().size());
            assertEquals("cannot read the list database " + home.resolve("lists.db")
                    + ": the file is damaged (a record has the wrong size); move the file away to start without lists,"
                    + " or use another storage directory",
                    assertThrows(Failure.class, () -> snapshot.list(Kind.SATELLITES, 9)).getMessage());
            assertEquals(2, snapshot.list(Kind.SATELLITES, 3).orElseThrow().size());
        }
    }

    @Test
    void aDatabaseWithoutPermissionIsDescribed() throws Exception {
        Path database = home.resolve("lists.db");
        Files.setPosixFilePermissions(database, PosixFilePermissions.fromString("---------"));
        assumeFalse(Files.isReadable(database), "root may read every file");
        assertFails("cannot read the list database " + database
                + ": Permission denied; change its owner or permissions, or use another storage directory");
    }
}
