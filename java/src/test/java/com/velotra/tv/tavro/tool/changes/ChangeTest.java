package com.velotra.tv.tavro.tool.changes;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.tool.input.Failure;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Layout;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.Storage;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Collections;
import java.util.List;
import java.util.stream.Stream;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Changes of several lists, wholly or not at all, over the storage of this process. */
class ChangeTest {
    private static final VltTvChannelList SERVICES = VltTvChannelList.getInstance();
    private static final VltTvNetworkList NETWORKS = VltTvNetworkList.getInstance();

    @TempDir
    Path folder;

    @BeforeEach
    void startWithTwoLists() throws IOException {
        Path undo = Storage.directory().resolve("undo");
        if (Files.isRegularFile(undo)) {
            Files.delete(undo);
        } else if (Files.exists(undo)) {
            try (Stream<Path> entries = Files.list(undo)) {
                entries.toList().forEach(UndoEntry::delete);
            }
        }
        SERVICES.open(1);
        SERVICES.clean(1);
        for (String name : List.of("Uno", "Due", "Tre")) {
            SERVICES.add(1, new VltTvChannelInfoBase().setServiceName(name).setBroadcastType(2));
        }
        NETWORKS.open(1);
        NETWORKS.clean(1);
        NETWORKS.add(1, network("Rete"));
        if (SERVICES.exists(2)) {
            SERVICES.delete(2);
        }
    }

    private static VltTvNetworkInfoBase network(String name) {
        VltTvNetworkInfoBase info = new VltTvNetworkInfoBase();
        info.setNetworkName(name);
        return info;
    }

    private static List<UndoEntry> entries() {
        return UndoHistory.of(Storage.directory()).entries();
    }

    private static List<String> names(int listId) {
        return SERVICES.getAll(listId).stream().map(service -> service.name()).toList();
    }

    private static RecordList reversed(RecordList list) {
        List<Record> records = new ArrayList<>(list);
        Collections.reverse(records);
        return RecordList.of(list.kind(), list.listId(), list.name(), records);
    }

    private static RecordList services(int listId) {
        return StoredLists.read(Kind.SERVICES, listId);
    }

    @Test
    void aChangeThatThrowsRestoresAllListsByteForByte() {
        byte[] services = services(1).bytes();
        byte[] networks = StoredLists.read(Kind.NETWORKS, 1).bytes();
        Failure failure = assertThrows(Failure.class, () -> Change.make("test", change -> {
            change.replace(reversed(change.read(Kind.SERVICES, 1)));
            change.save(Kind.SERVICES, 2);
            SERVICES.open(2);
            SERVICES.copy(1, 2);
            change.save(Kind.NETWORKS, 1);
            NETWORKS.delete(1);
            assertEquals(List.of("Tre", "Due", "Uno"), names(2));
            throw new Failure("stop");
        }));
        assertEquals("stop", failure.getMessage());
        assertArrayEquals(services, services(1).bytes());
        assertArrayEquals(networks, StoredLists.read(Kind.NETWORKS, 1).bytes());
        assertFalse(SERVICES.exists(2));
        assertEquals(List.of(), entries());
        assertTrue(isEmpty(Storage.directory().resolve("undo")));
    }

    private static boolean isEmpty(Path directory) {
        try (Stream<Path> files = Files.list(directory)) {
            return files.findAny().isEmpty();
        } catch (IOException e) {
            throw new AssertionError(e);
        }
    }

    @Test
    void aChangeIsRecordedWithItsCommandAndLists() {
        int result = Change.make("order\t1 'a\\b'\n", change -> {
            change.replace(reversed(change.read(Kind.SERVICES, 1)));
            change.read(Kind.NETWORKS, 1);
            change.save(Kind.SERVICES, 2);
            return 7;
        });
        assertEquals(7, result);
        assertEquals(List.of("Tre", "Due", "Uno"), names(1));
        UndoEntry entry = entries().get(0);
        assertEquals("order\t1 'a\\b'\n", entry.command());
        assertTrue(entry.finished());
        assertEquals("[service list 1]", entry.lists().toString());
        assertEquals(1, entries().size());
    }

    @Test
    void aChangeThatChangesNothingIsNotRecorded() {
        Change.make("look", change -> change.read(Kind.SERVICES, 1));
        Change.make("nothing", change -> {
            change.save(Kind.SERVICES, 1);
            change.save(Kind.SERVICES, 2);
            return null;
        });
        assertEquals(List.of(), entries());
        assertTrue(isEmpty(Storage.directory().resolve("undo")));
    }

    @Test
    void aSecondReplacementSeesTheFirst() {
        Change.make("twice", change -> {
            change.replace(reversed(change.read(Kind.SERVICES, 1)));
            assertEquals(List.of("Tre", "Due", "Uno"), names(1));
            change.replace(reversed(change.read(Kind.SERVICES, 1)));
            return null;
        });
        assertEquals(List.of("Uno", "Due", "Tre"), names(1));
    }

    @Test
    void aChangeWithinAChangeIsPartOfIt() {
        assertThrows(Failure.class, () -> Change.make("outer", outer -> {
            Change.make("inner", inner -> {
                inner.replace(reversed(inner.read(Kind.SERVICES, 1)));
                return null;
            });
            throw new Failure("stop");
        }));
        assertEquals(List.of("Uno", "Due", "Tre"), names(1));
    }

    @Test
    void anEmptyAndANewListCanBeReplaced() {
        RecordList none = RecordList.of(Kind.SERVICES, 2, "x", List.of());
        Change.make("empty", change -> {
            change.replace(none);
            return null;
        });
        assertEquals(0, services(2).size());
        Record renamed = services(1).get(0).with(Layout.of(Kind.SERVICES).field("name").orElseThrow(), "Neu");
        Change.make("fill", change -> {
            change.replace(RecordList.of(Kind.SERVICES, 2, "x", List.of(renamed)));
            return null;
        });
        assertEquals(List.of("Neu"), names(2));
        assertEquals(List.of("empty", "fill"), entries().stream().map(UndoEntry::command).toList());
    }

    @Test
    void aChangeByAnotherProgramIsNoticedAndKept() {
        Failure failure = assertThrows(Failure.class, () -> Change.make("test", change -> {
            RecordList list = change.read(Kind.SERVICES, 1);
            SERVICES.remove(new RecordId(1, 2)); // as another program would, without the lock for changes
            change.replace(reversed(list));
            return null;
        }));
        assertEquals("another program has changed service list 1 in the meantime; try again", failure.getMessage());
        assertEquals(List.of("Uno", "Tre"), names(1));
        assertEquals(List.of(), entries());
    }

    @Test
    void onlyTheLastTwentyChangesAreKept() {
        for (int i = 1; i <= 22; i++) {
            String name = "name " + i;
            Change.make("change " + i, change -> {
                change.save(Kind.NETWORKS, 1);
                NETWORKS.add(1, network(name));
                return null;
            });
        }
        assertEquals(20, entries().size());
        assertEquals("change 3", entries().get(0).command());
        assertEquals("change 22", entries().get(19).command());
    }

    @Test
    void aListThatCannotBeSavedIsNotChanged() throws IOException {
        Path undo = Storage.directory().resolve("undo");
        Files.deleteIfExists(undo);
        Files.writeString(undo, "no directory");
        Failure failure = assertThrows(Failure.class, () -> Change.make("test", change -> {
            change.replace(RecordList.of(Kind.SERVICES, 1, "x", List.of()));
            return null;
        }));
        assertEquals("cannot save lists in " + undo.toAbsolutePath()
                + ": it is a file, not a directory; nothing was changed", failure.getMessage());
        assertEquals(List.of("Uno", "Due", "Tre"), names(1));
    }

    @Test
    void recordsThatNoListCanHaveChangeNothing() {
        byte[] before = services(1).bytes();
        Record noId = services(1).get(0).with(Layout.of(Kind.SERVICES).field("record_id").orElseThrow(), "65535");
        for (int list = 1; list <= 2; list++) {
            RecordList refused = RecordList.of(Kind.SERVICES, list, "x", List.of(noId));
            Failure failure = assertThrows(Failure.class, () -> Change.make("test", change -> {
                change.replace(refused);
                return null;
            }));
            assertTrue(failure.getMessage().endsWith(": record id 65535 is not valid"), failure.getMessage());
        }
        assertArrayEquals(before, services(1).bytes());
        assertFalse(SERVICES.exists(2));
        assertEquals(List.of(), entries());
    }

    @Test
    void aMissingListCannotBeRead() {
        Failure failure = assertThrows(Failure.class,
                () -> Change.make("test", change -> change.read(Kind.SATELLITES, 9)));
        assertEquals("no satellite list 9 in " + Storage.directory() + "; it has none; ./tavro import makes some",
                failure.getMessage());
    }
}
