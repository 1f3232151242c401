package com.velotra.tv.tavro.tool.comparing;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;

import com.velotra.tv.tavro.tool.ToolProcess;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import com.velotra.tv.tavro.tool.changes.Change;
import com.velotra.tv.tavro.tool.matching.Sample;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.ListFile;
import com.velotra.tv.tavro.tool.storage.StoredLists;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** ./tavro merge and ./tavro order over real lists. */
class MergeCommandTest {
    private final Sample edited = new Sample(1)
            .stream(1, 474000, 8468, 1)
            .service(1, "My first", 1, 101, "lcn=1", "service_type=1").service(2, "Gone", 1, 102, "lcn=2")
            .service(3, "ZDF", 1, 103);
    private final Sample rescan = new Sample(2)
            .stream(1, 474000, 8468, 1).stream(2, 482000, 8468, 2)
            .service(1, "ZDF", 1, 103).service(2, "First", 1, 101, "service_type=2")
            .service(3, "New", 2, 104, "lcn=2");
    private final RecordList before = edited.list(Kind.SERVICES);

    @TempDir
    Path folder;

    @BeforeEach
    void store() {
        for (Sample sample : new Sample[] {edited, rescan}) {
            Change.make("test", change -> {
                change.replace(sample.list(Kind.STREAMS));
                change.replace(sample.list(Kind.SERVICES));
                return null;
            });
        }
    }

    private static Result tool(String... arguments) {
        return ToolProcess.runHere(arguments);
    }

    private static RecordList list() {
        return StoredLists.read(Kind.SERVICES, 1);
    }

    private String file(String content) throws IOException {
        return Files.writeString(folder.resolve("reference"), content).toString();
    }

    /** Checks that a command fails with a message and leaves the list as it was. */
    private void assertFails(int exit, String message, String... arguments) {
        assertEquals(new Result(exit, "", message), tool(arguments));
        assertEquals(before, list());
    }

    @Test
    void mergePrintsMissingServicesAndCounts() {
        assertEquals(new Result(0, """
                missing from the rescan, kept:
                  1,2 "Gone"
                new, with a channel number that another service has:
                  1,4 "New"
                1 added, 1 changed, 2 equal
                """, ""), tool("merge", "1", "--from", "2"));
        assertEquals(new Sample(1)
                .service(1, "My first", 1, 101, "lcn=1", "service_type=2").service(2, "Gone", 1, 102, "lcn=2")
                .service(3, "ZDF", 1, 103)
                .service(4, "New", 2, 104, "lcn=2", "tsl_id=2").list(Kind.SERVICES), list());
        assertEquals(new Result(0, "missing from the rescan, kept:\n  1,2 \"Gone\"\n4 equal\n", ""),
                tool("merge", "1", "--from", "2"));
    }

    @Test
    void mergeRemovesMissingServicesOnRequest() {
        assertEquals(new Result(0, """
                ~ 1,1 "My first"
                    service type: 1 (audio and video) -> 2 (audio)
                    name: "My first" -> "First"
                - 1,2 "Gone"
                + 1,4 "New"
                missing from the rescan, removed:
                  1,2 "Gone"
                dry run: 1 removed, 1 added, 1 changed, 1 equal
                """, ""), tool("merge", "1", "--from", "2", "--remove-missing", "--take", "names", "--dry-run"));
        assertEquals(before, list());
        assertEquals(0, tool("merge", "1", "--from", "2", "--remove-missing").exit());
        assertEquals(List.of(1, 3, 4), list().stream().map(Record::id).toList());
    }

    @Test
    void mergeAndOrderPrintJson() throws Exception {
        assertEquals("""
                {
                  "dry_run": true,
                  "kind": "services",
                  "from_list": 1,
                  "to_list": 1,
                  "removed": 0,
                  "added": 0,
                  "changed": 0,
                  "moved": 0,
                  "equal": 3,
                  "differences": [],
                  "missing": [
                    "1,1",
                    "1,2",
                    "1,3"
                  ],
                  "taken_numbers": [],
                  "cleared_references": {}
                }
                """,
                tool("merge", "1", "--from", listFile(new Sample(3).list(Kind.SERVICES)), "--dry-run", "--json").out());
        assertEquals("""
                {
                  "dry_run": false,
                  "kind": "services",
                  "from_list": 1,
                  "to_list": 1,
                  "removed": 0,
                  "added": 0,
                  "changed": 0,
                  "moved": 0,
                  "equal": 3,
                  "differences": [],
                  "unmatched": [
                    "1,2",
                    "1,3"
                  ],
                  "unmatched_entries": []
                }
                """, tool("order", "1", "--from", file(";My first;"), "--json").out());
    }

    private String listFile(RecordList list) {
        Path file = folder.resolve("stored.list");
        ListFile.write(file, list);
        return file.toString();
    }

    @Test
    void mergeFromAnotherStorageDirectoryNeedsItsStreams() throws Exception {
        String other = folder.resolve("other").toString();
        List<String> copy = List.of("cp", "-r", System.getenv("TAVRO_HOME"), other);
        assertEquals(0, ToolProcess.run(copy, folder, folder.resolve("out"), Map.of()));
        assertFails(1, "tavro: no transport stream here for 1 new service in " + other
                + ":2; merge the streams first\n", "merge", "1", "--from", other + ":2");
        assertEquals("1 added, 1 equal\n", tool("merge", "1", "-k", "streams", "--from", other + ":2").out());
        assertEquals(0, tool("merge", "1", "--from", other + ":2").exit());
        assertEquals(new Sample(1).service(4, "New", 2, 104, "lcn=2").list(Kind.SERVICES).get(0), list().get(3));
    }

    @Test
    void orderTakesEverythingFromAList() {
        assertEquals(new Result(0, """
                not in service list 2, kept after the others:
                  1,2 "Gone"
                not in service list 1:
                  2,3 "New"
                1 changed, 1 moved, 1 equal
                """, ""), tool("order", "1", "--from", "2"));
        assertEquals(new Sample(1).service(3, "ZDF", 1, 103)
                .service(1, "First", 1, 101, "service_type=1").service(2, "Gone", 1, 102, "lcn=2").list(Kind.SERVICES),
                list());
    }

    @Test
    void orderTakesNumbersFromAReferenceFile() throws Exception {
        String reference = file("5;;8468-1-103\n;;8468-1-101\n7;Nowhere;1-2-3\n;Gone;\n");
        assertEquals(new Result(0, """
                ~ 1,3 "ZDF" moved from 3 to 1
                    channel id: 0x00000000 (major 0) -> 0x00140000 (major 5)
                    logical channel number: 0 -> 5
                not in service list 1:
                  FILE:3: 7;Nowhere;1-2-3
                dry run: 1 changed, 1 moved, 2 equal
                """.replace("FILE", reference), ""), tool("order", "1", "--dry-run", "--from", reference));
        assertEquals(before, list());
        assertEquals(0, tool("order", "1", "--only", "numbers", "--from", reference).exit());
        assertEquals(List.of(1, 2, 3), list().stream().map(Record::id).toList());
        assertEquals(new Sample(1).service(3, "ZDF", 1, 103, "lcn=5", "channel_id=0x140000").list(Kind.SERVICES).get(0),
                list().get(2));
    }

    @Test
    void mergeDoesNotCreateAMissingStorageDirectory() throws Exception {
        Path missing = folder.resolve("missing");
        assertEquals(new Result(1, "", "tavro: cannot read the storage directory " + missing
                + ": no such directory; set TAVRO_HOME to the one that holds your lists\n"),
                ToolProcess.run(folder, Map.of("TAVRO_HOME", missing.toString()), "merge", "1", "--from", "2"));
        assertFalse(Files.exists(missing));
    }

    @Test
    void undoPrintsTheWordsOfMergeAndOrderQuoted() throws Exception {
        Path file = Files.writeString(folder.resolve("my reference"), "9;ZDF;\n");
        tool("order", "1", "--from", file.toString());
        assertEquals(new Result(0, "undone: order 1 --from '" + file + "'\n  service list 1: restored\n", ""),
                tool("undo"));
    }

    @Test
    void badInputIsNamedAndChangesNothing() throws Exception {
        String bad = file("1;ZDF;8468-1-103\nx;ZDF;\nZDF\n");
        assertFails(1, "  " + bad + ":2: channel number 'x' is not a number from 0 to 16383\n  " + bad + ":3: 'ZDF' is "
                + "not number;name;network-stream-service\ntavro: 2 bad lines in " + bad + "; nothing was changed\n",
                "order", "1", "--from", bad);
        assertFails(1, "tavro: " + file("# none\n")
                + " does not name a service; write lines NUMBER;NAME;NETWORK-STREAM-SERVICE\n",
                "order", "1", "--from", file("# none\n"));
        assertFails(1, "tavro: cannot read nope: no such file or folder\n", "order", "1", "--from", "nope");
        assertFails(1, "tavro: a reference file names services; to order streams, use --from with a list\n",
                "order", "1", "-k", "streams", "--from", bad);
        assertFails(1, "tavro: '1,2' is not a list; name a list id, DIR:ID or a list file\n",
                "merge", "1", "--from", "1,2");
        assertFails(1, "tavro: the rescan is empty, so all records would be removed; "
                + "to empty the list, use ./tavro clean\n",
                "merge", "1", "--remove-missing", "--from", listFile(new Sample(3).list(Kind.SERVICES)));
        assertFails(2, "tavro: order: unknown part 'lcn': use order, numbers, names, flags\n"
                + "See: ./tavro order --help\n", "order", "1", "--from", "2", "--only", "names,lcn");
        assertFails(2, "tavro: merge: unknown part 'order': use numbers, names, flags\nSee: ./tavro merge --help\n",
                "merge", "1", "--from", "2", "--take", "order");
        assertFails(2, "tavro: merge: Missing required option: '--from=OTHER'\nSee: ./tavro merge --help\n",
                "merge", "1");
        for (String command : List.of("merge", "order")) {
            String missing = "tavro: no service list 9 in " + System.getenv("TAVRO_HOME")
                    + "; it has service lists 1, 2\n";
            assertFails(1, missing, command, "9", "--from", "2");
            assertFails(1, missing, command, "1", "--from", "9");
        }
    }
}
