package com.velotra.tv.tavro.tool.editing;

import static com.velotra.tv.tavro.tool.ToolProcess.runHere;
import static com.velotra.tv.tavro.tool.editing.EditedLists.bytes;
import static com.velotra.tv.tavro.tool.editing.EditedLists.names;
import static com.velotra.tv.tavro.tool.editing.EditedLists.services;
import static com.velotra.tv.tavro.tool.editing.EditedLists.undoable;
import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.services.channellist.RecordId;
import com.velotra.tv.tavro.services.channellist.ServiceRecord;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.storage.Storage;
import java.io.IOException;
import java.util.List;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;

/** The commands remove, copy of records, and move. */
class RecordCommandsTest {
    private static final String UNKNOWN_LIST = "no service list 9 in " + Storage.directory()
            + "; it has service lists 1, 2";

    @BeforeEach
    void startWithTwoLists() throws IOException {
        EditedLists.deleteAll();
        services(1, "Uno", "Due", "Tre", "Quattro", "Cinque");
        services(2, "Altro");
    }

    private static Result done(String out) {
        return new Result(0, out, "");
    }

    private static Result failed(String message) {
        return new Result(1, "", "tavro: " + message + "\n");
    }

    private static Result wrong(String command, String message) {
        return new Result(2, "", "tavro: " + command + ": " + message + "\nSee: ./tavro " + command + " --help\n");
    }

    @Test
    void recordsAreRemovedFromSeveralListsAndCanBeRestored() {
        byte[] first = bytes(Kind.SERVICES, 1);
        byte[] second = bytes(Kind.SERVICES, 2);
        String summary = "service list 1: 3 services removed, 2 left\nservice list 2: 1 service removed, 0 left\n";
        assertEquals(done("dry run: " + summary.replace("\ns", "\ndry run: s")),
                runHere("remove", "1,5", "1,1-2", "2,1", "1,1", "-n"));
        assertArrayEquals(first, bytes(Kind.SERVICES, 1));
        assertEquals(done(summary), runHere("remove", "1,5", "1,1-2", "2,1", "1,1"));
        assertEquals(List.of("3 Tre", "4 Quattro"), names(1));
        assertEquals(List.of(), names(2));
        runHere("undo");
        assertArrayEquals(first, bytes(Kind.SERVICES, 1));
        assertArrayEquals(second, bytes(Kind.SERVICES, 2));
    }

    @Test
    void nothingIsRemovedIfOneRecordDoesNotExist() {
        byte[] before = bytes(Kind.SERVICES, 1);
        assertEquals(failed("service list 1 has no record 9"), runHere("remove", "1,1", "1,9"));
        assertEquals(failed("service list 1 has no records 6 to 9"), runHere("remove", "1,1", "1,6-9"));
        assertEquals(failed(UNKNOWN_LIST), runHere("remove", "1,1", "9,1"));
        for (String word : List.of("1", "1,", "0,1", "1,2-1", "1,65535", "1,1-65535", "65536,1", "x", "1,-2", "")) {
            assertEquals(wrong("remove", "'" + word + "' names no records: write LIST,RECORD or LIST,FIRST-LAST, a "
                    + "list id from 1 to 65535 and record ids from 0 to 65534"), runHere("remove", "--", word));
        }
        assertArrayEquals(before, bytes(Kind.SERVICES, 1));
        assertEquals(List.of(), undoable());
    }

    @Test
    void recordsAreCopiedUnderTheirIds() {
        assertEquals(done("dry run: service list 2: 2 added, 0 replaced\n"), runHere("copy", "1,4", "1,2", "2", "-n"));
        assertEquals(List.of("1 Altro"), names(2));
        assertEquals(done("service list 2: 2 added, 0 replaced\n"), runHere("copy", "1,4", "1,2", "2"));
        assertEquals(List.of("1 Altro", "4 Quattro", "2 Due"), names(2));
        runHere("undo");
        assertEquals(List.of("1 Altro"), names(2));
    }

    @Test
    void aTakenIdIsReplacedOnlyWithTheOption() {
        assertEquals(failed("service list 2 already has a record 1; replace it with --replace, or add a copy under a "
                + "new id: ./tavro add 2 --copy 1,1"), runHere("copy", "1,1-3", "2"));
        assertEquals(List.of("1 Altro"), names(2));
        assertEquals(done("service list 2: 2 added, 1 replaced\n"), runHere("copy", "1,1-3", "2", "--replace"));
        assertEquals(List.of("1 Uno", "2 Due", "3 Tre"), names(2));
    }

    @Test
    void copyOfRecordsReportsWhatDoesNotExist() {
        assertEquals(failed("service list 1 has no record 9"), runHere("copy", "1,9", "2"));
        assertEquals(failed(UNKNOWN_LIST), runHere("copy", "1,2", "9"));
        assertEquals(failed("two of the services have the record id 1; copy them one after the other"),
                runHere("copy", "1,1", "2,1", "2", "-r"));
        assertEquals(wrong("copy", "'1' names no records: write LIST,RECORD or LIST,FIRST-LAST, a list id from 1 to "
                + "65535 and record ids from 0 to 65534"), runHere("copy", "1", "1,2", "2"));
        assertEquals(List.of("1 Altro"), names(2));
        assertEquals(List.of(), undoable());
    }

    @Test
    void recordsAreMovedToAPlaceInTheOrderInWhichTheyAreNamed() {
        byte[] before = bytes(Kind.SERVICES, 1);
        assertEquals(done("service list 1: 2 services moved to position 2\n"),
                runHere("move", "1,5", "1,4", "--to", "2"));
        assertEquals(List.of("1 Uno", "5 Cinque", "4 Quattro", "2 Due", "3 Tre"), names(1));
        assertEquals(done("service list 1: 1 service moved to position 3\n"),
                runHere("move", "1,5", "--after", "1,4"));
        assertEquals(done("service list 1: 1 service moved to position 1\n"),
                runHere("move", "1,3", "--before", "1,1"));
        assertEquals(done("service list 1: 3 services moved to position 3\n"), runHere("move", "1,1-3", "--last"));
        assertEquals(List.of("4 Quattro", "5 Cinque", "3 Tre", "1 Uno", "2 Due"), names(1));
        assertEquals(done("dry run: service list 1: 1 service moved to position 1\n"),
                runHere("move", "1,2", "--first", "--dry-run"));
        assertEquals(List.of("4 Quattro", "5 Cinque", "3 Tre", "1 Uno", "2 Due"), names(1));
        assertEquals(4, undoable().size());
        runHere("undo", "1");
        assertArrayEquals(before, bytes(Kind.SERVICES, 1));
    }

    @Test
    void moveReportsPlacesThatDoNotExist() {
        assertEquals(failed("position 5 is not in service list 1: positions are from 1 to 4"),
                runHere("move", "1,1", "1,2", "--to", "5"));
        assertEquals(failed("record 1,2 is itself moved; name another record"),
                runHere("move", "1,1-3", "--after", "1,2"));
        assertEquals(failed("service list 1 has no record 8"), runHere("move", "1,1", "--after", "1,8"));
        assertEquals(failed("record 2,1 is in another list than the records to move"),
                runHere("move", "1,1", "--after", "2,1"));
        assertEquals(failed("the records to move are in several lists; move the records of each list separately"),
                runHere("move", "1,1", "2,1", "--first"));
        assertEquals(failed(UNKNOWN_LIST), runHere("move", "9,1", "--first"));
        assertEquals(wrong("move", "say where to: one of --to, --before, --after, --first, --last, --number and "
                + "--renumber"), runHere("move", "1,1"));
        assertEquals(wrong("move", "--first, --last are mutually exclusive (specify only one)"),
                runHere("move", "1,1", "--first", "--last"));
        assertEquals(wrong("move", "'0' is not a position: it must be from 1 to 65535"),
                runHere("move", "1,1", "--to", "0"));
        assertEquals(wrong("move", "'16384' is not a channel number: it must be from 1 to 16383"),
                runHere("move", "1,1", "--number", "16384"));
        assertEquals(List.of(), undoable());
    }

    private static List<String> numbers(int listId) {
        return VltTvChannelList.getInstance().getAll(listId).stream().map(service -> service.recordId() + ":"
                + service.logicalChannelNumber() + ":" + service.majorChannelNumber()).toList();
    }

    @Test
    void channelNumbersAreSetOneAfterTheOther() {
        assertEquals(done("service list 1: numbers 100 to 101\n"), runHere("move", "1,4", "1,2", "--number", "100"));
        assertEquals(List.of("1:1:1", "2:101:101", "3:3:3", "4:100:100", "5:5:5"), numbers(1));
        ServiceRecord moved = VltTvChannelList.getInstance().get(new RecordId(1, 4)).orElseThrow();
        ServiceRecord other = VltTvChannelList.getInstance().get(new RecordId(1, 3)).orElseThrow();
        assertEquals("[NUMBER_EDITED] []", moved.flags() + " " + other.flags());
        assertEquals(failed("service 1,3 already has the number 3; give it another one first, or number the whole list "
                + "anew with --renumber"), runHere("move", "1,1", "1,2", "--number", "2"));
        assertEquals(List.of("1:1:1", "2:101:101", "3:3:3", "4:100:100", "5:5:5"), numbers(1));
    }

    @Test
    void aListIsNumberedAnewInItsNewOrder() {
        assertEquals(done("service list 1: 1 service moved to position 1, numbers 10 to 14\n"),
                runHere("move", "1,5", "--first", "--renumber", "10"));
        assertEquals(List.of("5:10:10", "1:11:11", "2:12:12", "3:13:13", "4:14:14"), numbers(1));
        assertEquals(done("service list 1: numbers 10 to 14\n"), runHere("move", "1,5", "--renumber", "10"));
        assertEquals(List.of("move 1,5 --first --renumber 10"), undoable());
        runHere("undo");
        assertEquals(List.of("1:1:1", "2:2:2", "3:3:3", "4:4:4", "5:5:5"), numbers(1));
    }

    @Test
    void onlyServicesHaveChannelNumbers() {
        Kind.NETWORKS.lists().open(1);
        assertEquals(0, runHere("add", "1", "-k", "networks", "name=Rete").exit());
        assertEquals(failed("only services have channel numbers"),
                runHere("move", "1,1", "-k", "networks", "--number", "1"));
        assertEquals(done("network list 1: 1 network moved to position 1\n"),
                runHere("move", "1,1", "-k", "networks", "--first"));
        assertEquals(List.of("add 1 -k networks name=Rete"), undoable());
    }
}
