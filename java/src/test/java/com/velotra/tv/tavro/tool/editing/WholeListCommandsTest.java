package com.velotra.tv.tavro.tool.editing;

import static com.velotra.tv.tavro.tool.ToolProcess.runHere;
import static com.velotra.tv.tavro.tool.editing.EditedLists.bytes;
import static com.velotra.tv.tavro.tool.editing.EditedLists.names;
import static com.velotra.tv.tavro.tool.editing.EditedLists.services;
import static com.velotra.tv.tavro.tool.editing.EditedLists.undoable;
import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;

import com.velotra.tv.tavro.services.channellist.VltTvChannelInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.storage.Storage;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** The commands store, load, copy of a list, clean, delete and undo. */
class WholeListCommandsTest {
    private static final VltTvChannelList SERVICES = VltTvChannelList.getInstance();

    @TempDir
    Path folder;

    @BeforeEach
    void startWithOneList() throws IOException {
        EditedLists.deleteAll();
        services(1, "Uno", "Due", "Tre");
    }

    private static Result done(String out) {
        return new Result(0, out, "");
    }

    private static Result failed(String message) {
        return new Result(1, "", "tavro: " + message + "\n");
    }

    @Test
    void aStoredListCanBeLoadedAgain() {
        Path file = folder.resolve("list");
        assertEquals(done("3 services of list 1 stored in " + file + "\n"), runHere("store", "1", file.toString()));
        assertEquals(List.of(), undoable());
        assertEquals(done("service list 5: 3 services loaded from " + file + "\n"),
                runHere("load", "5", file.toString()));
        assertArrayEquals(bytes(Kind.SERVICES, 1), bytes(Kind.SERVICES, 5));
        assertEquals(List.of("load 5 " + file), undoable());
        assertEquals(done("undone: load 5 " + file + "\n  service list 5: deleted, as it did not exist\n"),
                runHere("undo"));
        assertFalse(SERVICES.exists(5));
    }

    @Test
    void aListFileIsReplacedButNoOtherFile() throws IOException {
        Path file = folder.resolve("list");
        runHere("store", "1", file.toString());
        SERVICES.clean(1);
        assertEquals(done("0 services of list 1 stored in " + file + "\n"), runHere("store", "1", file.toString()));
        assertEquals(done("service list 5: 0 services loaded from " + file + "\n"),
                runHere("load", "5", file.toString()));
        Path letter = Files.writeString(folder.resolve("letter"), "Dear all");
        assertEquals(1, runHere("store", "1", letter.toString()).exit());
        assertEquals("Dear all", Files.readString(letter));
    }

    @Test
    void storeReportsMissingListsAndFolders() throws Exception {
        assertEquals(failed("no service list 9 in " + Storage.directory() + "; it has service list 1"),
                runHere("store", "9", folder.resolve("list").toString()));
        Path missing = folder.resolve("no/list");
        assertEquals(failed("cannot write " + missing + ": no such directory: " + missing.getParent()),
                runHere("store", "1", missing.toString()));
        assertEquals(failed("cannot write " + folder + ": it is a directory"),
                runHere("store", "1", folder.toString()));
        Path pipe = folder.resolve("pipe");
        assertEquals(0, new ProcessBuilder("mkfifo", pipe.toString()).start().waitFor());
        assertEquals(failed("cannot write " + pipe + ": it is not a regular file"),
                runHere("store", "1", pipe.toString()));
        assertEquals(2, runHere("store", "0", "x").exit());
        assertEquals(2, runHere("store", "1").exit());
    }

    @Test
    void aFileThatCannotBeLoadedLeavesTheListAsItIs() throws IOException {
        byte[] before = bytes(Kind.SERVICES, 1);
        Path letter = Files.writeString(folder.resolve("letter"), "Dear all");
        assertEquals(1, runHere("load", "1", letter.toString()).exit());
        assertEquals("Dear all", Files.readString(letter));
        assertEquals(1, runHere("load", "1", folder.resolve("missing").toString()).exit());
        VltTvNetworkList.getInstance().open(1);
        Path networks = folder.resolve("networks");
        runHere("store", "1", "-k", "networks", networks.toString());
        assertEquals(failed(networks + " contains a network list; load it with --kind networks"),
                runHere("load", "1", networks.toString()));
        assertArrayEquals(before, bytes(Kind.SERVICES, 1));
        assertEquals(List.of(), undoable());
    }

    @Test
    void aCopiedListReplacesTheOtherAndCanBeUndone() {
        services(2, "Altro");
        byte[] other = bytes(Kind.SERVICES, 2);
        assertEquals(done("service list 2: 3 services copied from list 1\n"), runHere("copy", "1", "2"));
        assertArrayEquals(bytes(Kind.SERVICES, 1), bytes(Kind.SERVICES, 2));
        assertEquals(done("undone: copy 1 2\n  service list 2: restored\n"), runHere("undo"));
        assertArrayEquals(other, bytes(Kind.SERVICES, 2));
        assertEquals(done("undone: undo 1\n  service list 2: restored\n"), runHere("undo"));
        assertArrayEquals(bytes(Kind.SERVICES, 1), bytes(Kind.SERVICES, 2));
        assertEquals(List.of("copy 1 2", "undo 1", "undo 2"), undoable());
    }

    @Test
    void copyReportsMissingListsAndWrongWords() {
        assertEquals(failed("no service list 9 in " + Storage.directory() + "; it has service list 1"),
                runHere("copy", "9", "1"));
        assertEquals(failed("cannot copy service list 1 to itself"), runHere("copy", "1", "1"));
        String see = "\nSee: ./tavro copy --help\n";
        assertEquals(new Result(2, "", "tavro: copy: '0' is not a list id: it must be from 1 to 65535" + see),
                runHere("copy", "1", "0"));
        assertEquals(new Result(2, "", "tavro: copy: 'x' is not a list id: it must be from 1 to 65535" + see),
                runHere("copy", "x", "5"));
        assertEquals(List.of("1 Uno", "2 Due", "3 Tre"), names(1));
        assertFalse(SERVICES.exists(5));
    }

    @Test
    void aCleanedListIsEmptyAndCanBeUndone() {
        byte[] before = bytes(Kind.SERVICES, 1);
        assertEquals(done("dry run: service list 1: 3 services removed\n"), runHere("clean", "1", "--dry-run"));
        assertArrayEquals(before, bytes(Kind.SERVICES, 1));
        assertEquals(done("service list 1: 3 services removed\n"), runHere("clean", "1"));
        assertEquals(List.of(), names(1));
        assertEquals(done("service list 1: 0 services removed\n"), runHere("clean", "1"));
        assertEquals(List.of("clean 1"), undoable());
        runHere("undo");
        assertArrayEquals(before, bytes(Kind.SERVICES, 1));
        assertEquals(failed("no service list 9 in " + Storage.directory() + "; it has service list 1"),
                runHere("clean", "9"));
    }

    @Test
    void aDryRunOfDeleteAndStoreChangesNothing() throws Exception {
        byte[] before = bytes(Kind.SERVICES, 1);
        assertEquals(done("dry run: service list 1 deleted, with 3 services\n"), runHere("delete", "1", "--dry-run"));
        assertArrayEquals(before, bytes(Kind.SERVICES, 1));
        Path file = folder.resolve("dry");
        assertEquals(done("dry run: 3 services of list 1 stored in " + file + "\n"),
                runHere("store", "-n", "1", file.toString()));
        assertFalse(Files.exists(file));
        Files.writeString(file, "text");
        assertEquals(failed(file + " exists and is not a list file; choose another name or remove it first"),
                runHere("store", "-n", "1", file.toString()));
        assertEquals(List.of(), undoable());
    }

    @Test
    void aListIsDeletedOnlyWithYesIfThereIsNoTerminal() {
        byte[] before = bytes(Kind.SERVICES, 1);
        assertEquals(failed("not deleted: service list 1; there is no terminal to ask on: use --yes"),
                runHere("delete", "1"));
        assertEquals(3, names(1).size());
        assertEquals(done("service list 1 deleted, with 3 services; ./tavro undo restores it\n"),
                runHere("delete", "1", "--yes"));
        assertFalse(SERVICES.exists(1));
        runHere("undo");
        assertArrayEquals(before, bytes(Kind.SERVICES, 1));
        assertEquals(failed("no service list 9 in " + Storage.directory() + "; it has service list 1"),
                runHere("delete", "9", "--yes"));
    }

    @Test
    void undoReportsThatThereIsNothingToUndo() {
        assertEquals(failed("nothing to undo in " + Storage.directory()), runHere("undo"));
        assertEquals(new Result(0, "", "nothing to undo in " + Storage.directory() + "\n"), runHere("undo", "--list"));
        assertEquals(done("[]\n"), runHere("undo", "--json"));
        runHere("clean", "1");
        assertEquals(failed("there is no change 7 to undo; see ./tavro undo --list"), runHere("undo", "7"));
        assertEquals(new Result(2, "", "tavro: undo: '0' is not the number of a change: it must be from 1 to "
                + "2147483647\nSee: ./tavro undo --help\n"), runHere("undo", "0"));
        assertEquals(List.of(), names(1));
    }

    @Test
    void anOlderChangeIsUndoneWithWhatCameAfterIt() {
        runHere("copy", "1", "2");
        runHere("clean", "2");
        assertEquals(done("undone: copy 1 2\n  service list 2: deleted, as it did not exist\n"), runHere("undo", "1"));
        assertEquals(done("undone: copy 1 2\n  service list 2: it was as before\n"), runHere("undo", "1"));
        assertEquals(List.of("copy 1 2", "clean 2", "undo 1"), undoable());
        runHere("undo", "2");
        assertArrayEquals(bytes(Kind.SERVICES, 1), bytes(Kind.SERVICES, 2));
    }

    @Test
    void aChangeByAnotherProgramIsNotUndoneSilently() {
        runHere("clean", "1");
        SERVICES.add(1, new VltTvChannelInfoBase().setServiceName("Nuovo"));
        assertEquals(failed("another program has changed service list 1 since 'clean 1'; ./tavro undo 1 restores it "
                + "nevertheless"), runHere("undo"));
        assertEquals(List.of("1 Nuovo"), names(1));
        runHere("undo", "1");
        assertEquals(List.of("1 Uno", "2 Due", "3 Tre"), names(1));
        runHere("undo");
        assertEquals(List.of("1 Nuovo"), names(1));
    }

    @Test
    void undoListsCommandsWithTimeAndLists() {
        runHere("copy", "1", "2");
        runHere("load", "7", folder.resolve("no file").toString());
        runHere("clean", "1", "-k", "services");
        String time = "\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d";
        assertEquals("""
                number  time                 command              lists
                     1  TIME  copy 1 2             service list 2
                     2  TIME  clean 1 -k services  service list 1
                """, runHere("undo", "--list").out().replaceAll(time, "TIME"));
        assertEquals("""
                [
                  {
                    "number": 1,
                    "time": "TIME",
                    "command": "copy 1 2",
                    "finished": true,
                    "lists": [
                      {
                        "kind": "services",
                        "list": 2,
                        "existed": false
                      }
                    ]
                  },
                """, runHere("undo", "--json").out().replaceAll("\"\\d{4}-.*Z\"", "\"TIME\"").lines().limit(14)
                        .map(line -> line + "\n").reduce("", String::concat));
    }

    @Test
    void aDamagedHistoryIsReportedAndDoesNotStopChanges() throws IOException {
        runHere("clean", "1");
        Path manifest = Storage.directory().toAbsolutePath().resolve("undo/0001/manifest");
        Files.writeString(manifest, "list\tsvl\n");
        Result damaged = runHere("undo");
        assertEquals(1, damaged.exit());
        assertEquals("tavro: cannot read the saved lists in " + manifest.getParent().getParent() + ": damaged line in "
                + manifest + "; move this directory away to continue without them\n", damaged.err());
        assertEquals(done("service list 2: 0 services copied from list 1\n"), runHere("copy", "1", "2"));
    }

    @Test
    void listsOfAllKindsAreRestored() {
        VltTvNetworkInfoBase network = new VltTvNetworkInfoBase();
        network.setNetworkName("Rete");
        VltTvNetworkList.getInstance().open(3);
        VltTvNetworkList.getInstance().add(3, network);
        for (Kind kind : List.of(Kind.STREAMS, Kind.SATELLITES)) {
            kind.lists().open(3);
        }
        for (Kind kind : List.of(Kind.STREAMS, Kind.NETWORKS, Kind.SATELLITES)) {
            byte[] before = bytes(kind, 3);
            assertEquals(0, runHere("delete", "3", "--yes", "-k", kind.toString()).exit());
            assertFalse(kind.lists().exists(3));
            assertEquals(0, runHere("undo").exit());
            assertArrayEquals(before, bytes(kind, 3));
        }
    }
}
