package com.velotra.tv.tavro.tool.comparing;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.tool.ToolProcess;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import com.velotra.tv.tavro.tool.changes.Change;
import com.velotra.tv.tavro.tool.matching.Sample;
import com.velotra.tv.tavro.tool.output.Terminal;
import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.RecordList;
import com.velotra.tv.tavro.tool.storage.ListFile;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** ./tavro diff over real lists. */
class DiffCommandTest {
    private static final String FORMS = "; name a list id, LIST,RECORD, either after DIR:, a list file, a file of raw "
            + "records or a storage directory\n";
    private static final String COMPARABLE =
            ": compare two lists of the same kind, two records or two storage directories\n";

    private static final Sample BEFORE = new Sample(1)
            .stream(1, 474000, 8468, 1)
            .service(1, "Das Erste", 1, 101, "lcn=1").service(2, "Arte", 1, 102).service(3, "ZDF", 1, 103);
    private static final Sample AFTER = new Sample(2)
            .stream(1, 474000, 8468, 1)
            .service(1, "ZDF", 1, 103).service(2, "Das Erste HD", 1, 101, "lcn=2").service(3, "Neu\u001b", 1, 104);

    @TempDir
    Path folder;

    @BeforeAll
    static void store() {
        for (Sample sample : List.of(BEFORE, AFTER)) {
            Change.make("test", change -> {
                change.replace(sample.list(Kind.STREAMS));
                change.replace(sample.list(Kind.SERVICES));
                return null;
            });
        }
    }

    private static Result diff(String... arguments) {
        String[] all = new String[arguments.length + 1];
        all[0] = "diff";
        System.arraycopy(arguments, 0, all, 1, arguments.length);
        return ToolProcess.runHere(all);
    }

    private static Path storage() {
        return Path.of(System.getenv("TAVRO_HOME"));
    }

    // In a process of its own: SQLite loses its locks if this one closes a file of the database.
    private Path copyOfStorage() throws Exception {
        Path to = folder.resolve("other");
        List<String> copy = List.of("cp", "-r", storage().toString(), to.toString());
        assertEquals(0, ToolProcess.run(copy, folder, folder.resolve("out"), Map.of()));
        return to;
    }

    private String listFile(RecordList list) {
        Path file = folder.resolve("stored.list");
        ListFile.write(file, list);
        return file.toString();
    }

    private String raw(String name, int bytes) throws Exception {
        return Files.write(folder.resolve(name), new byte[bytes]).toString();
    }

    @Test
    void printsRemovedAddedChangedAndMovedRecords() {
        assertEquals(new Result(1, """
                --- service list 1
                +++ service list 2
                ~ 1,3 "ZDF" moved from 3 to 1
                    record id: 3 -> 1
                    transport stream list: 1 -> 2
                ~ 1,1 "Das Erste"
                    record id: 1 -> 2
                    transport stream list: 1 -> 2
                    name: "Das Erste" -> "Das Erste HD"
                    logical channel number: 1 -> 2
                - 1,2 "Arte"
                + 2,3 "Neu·"
                1 removed, 1 added, 2 changed, 1 moved
                """, ""), diff("1", "2"));
    }

    @Test
    void equalListsExitWithZero() {
        assertEquals(new Result(0, "3 equal\n", ""), diff("1", "1"));
        assertEquals(new Result(0, "1 equal\n", ""), diff("1", "2", "-k", "streams", "--ignore", "TSL-ID"));
        String file = listFile(BEFORE.list(Kind.SERVICES));
        assertEquals(new Result(0, "3 equal\n", ""), diff(file, "1"));
    }

    @Test
    void statPrintsCountsPerListAndPerField() {
        assertEquals(new Result(1, """
                --- service list 1
                +++ service list 2
                  transport stream list          2
                  name                           1
                  logical channel number         1
                1 removed, 1 added, 2 changed
                """, ""), diff("1", "2", "--stat", "--ignore", "Record_Id,order"));
    }

    @Test
    void jsonHasRawAndDecodedValues() {
        assertEquals(new Result(1, """
                {
                  "from": "service 1,1",
                  "to": "service 2,2",
                  "equal": false,
                  "lists": [
                    {
                      "kind": "services",
                      "from_list": 1,
                      "to_list": 2,
                      "removed": 0,
                      "added": 0,
                      "changed": 1,
                      "moved": 0,
                      "equal": 0,
                      "differences": [
                        {
                          "change": "changed",
                          "from": "1,1",
                          "to": "2,2",
                          "name": "Das Erste",
                          "from_place": 1,
                          "to_place": 1,
                          "moved": false,
                          "fields": [
                            {
                              "field": "name",
                              "label": "name",
                              "from": "Das Erste",
                              "to": "Das Erste HD",
                              "from_text": "\\"Das Erste\\"",
                              "to_text": "\\"Das Erste HD\\""
                            }
                          ]
                        }
                      ]
                    }
                  ]
                }
                """, ""), diff("1,1", "2,2", "--json", "--ignore", "lcn,record_id,tsl_id"));
        Result counts = diff("1", "2", "--json", "--stat");
        assertTrue(counts.out().contains("\"fields\": {\n        \"record id\": 2,\n"), counts.out());
    }

    @Test
    void storageDirectoriesAreComparedListByList() throws Exception {
        Path other = copyOfStorage();
        assertEquals(0, diff(storage().toString(), other.toString()).exit());
        RecordList changed = new Sample(1).stream(1, 482000, 8468, 1).list(Kind.STREAMS);
        Change.make("test", change -> {
            change.replace(changed);
            change.replace(new Sample(7).satellite(1, "Astra", 192).list(Kind.SATELLITES));
            return null;
        });
        try {
            assertEquals(new Result(1, """
                    --- storage directory OTHER
                    +++ storage directory HERE
                    transport stream list 1: 1 removed, 1 added
                    - 1,1 474000
                    + 1,1 482000
                    + satellite list 7: 1 record
                    1 list differs, 1 added, 3 equal
                    """.replace("OTHER", other.toString()).replace("HERE", storage().toString()), ""),
                    diff(other.toString(), storage().toString()));
            assertEquals(new Result(1, """
                    --- storage directory HERE
                    +++ storage directory OTHER
                    transport stream list 1: 1 removed, 1 added
                    - satellite list 7: 1 record
                    1 list differs, 1 removed, 3 equal
                    """.replace("OTHER", other.toString()).replace("HERE", storage().toString()), ""),
                    diff(storage().toString(), other.toString(), "--stat"));
            assertEquals(new Result(0, "lists: 2 equal\n", ""),
                    diff(other.toString(), storage().toString(), "-k", "services"));
            assertEquals("""
                    --- transport stream list 1 in OTHER
                    +++ transport stream list 1
                    - 1,1 474000
                    + 1,1 482000
                    1 removed, 1 added
                    """.replace("OTHER", other.toString()), diff(other + ":1", "1", "-k", "streams").out());
        } finally {
            VltTvSatelliteList.getInstance().delete(7);
            store();
        }
    }

    @Test
    void twoRawRecordsAreComparedFieldByField() throws Exception {
        byte[] record = Sample.with(Sample.record(Kind.NETWORKS, 5), "network_id=9").bytes();
        record[200] = 1;
        String file = Files.write(folder.resolve("record"), record).toString();
        String zeros = raw("zeros", 304);
        assertEquals(new Result(1, """
                --- file ZEROS
                +++ file FILE
                ~ 0 network 0
                    record id: 0 -> 5
                    network id: 0 -> 9
                    unnamed bytes from 200: 00 -> 01
                1 changed
                """.replace("FILE", file).replace("ZEROS", zeros), ""), diff(zeros, file));
    }

    @Test
    void aTerminalGetsColors() {
        Terminal.force(true, true, 80);
        try {
            assertEquals("""
                    \033[31m--- service list 1\033[0m
                    \033[32m+++ service list 2\033[0m
                    \033[31m- 1,2 "Arte"\033[0m
                    \033[33m~ 1,1 "Das Erste"\033[0m
                        name: "Das Erste" -> "Das Erste HD"
                        logical channel number: 1 -> 2
                    \033[32m+ 2,3 "Neu·"\033[0m
                    1 removed, 1 added, 1 changed, 1 equal
                    """, diff("1", "2", "--ignore", "record_id,tsl_id,order").out());
        } finally {
            Terminal.unforce();
        }
    }

    @Test
    void whatCannotBeReadOrComparedIsNamed() throws Exception {
        String file = listFile(BEFORE.list(Kind.SERVICES));
        Path empty = Files.createDirectory(folder.resolve("empty"));
        String odd = raw("odd", 100);
        String ambiguous = raw("ambiguous", 552 * 304);
        assertFails("no such file, directory or list: 'nope'" + FORMS, "nope", "1");
        assertFails("no such file, directory or list: 'nope:1'" + FORMS, "1", "nope:1");
        assertFails("service list 1 has no record 9\n", "1,9", "1,1");
        assertFails("cannot compare service 1,1 with service list 1" + COMPARABLE, "1,1", "1");
        assertFails("cannot compare service list 1 with storage directory " + storage() + COMPARABLE,
                "1", storage().toString());
        assertFails("cannot read list file " + file + ": it has a service list, not a transport stream list; use "
                + "--kind services\n", file, "1", "-k", "streams");
        assertFails("cannot compare service 1,1 with file " + raw("network", 304) + COMPARABLE,
                "1,1", raw("network", 304));
        assertFails("no lists in " + empty + ": it has no list database; is it a storage directory?\n",
                empty.toString(), storage().toString());
        assertFails("no service list 9 in " + storage() + "; it has service lists 1, 2\n", "1", storage() + ":9");
        assertFails(odd + " is neither a list file nor a file of records: its 100 bytes are not a whole number of "
                + "records (services 552, streams 724, networks 304, satellites 412 bytes)\n", odd, odd);
        assertFails(odd + " is neither a list file nor a file of network records: its 100 bytes are not a whole number "
                + "of records (services 552, streams 724, networks 304, satellites 412 bytes)\n",
                odd, odd, "-k", "networks");
        assertFails(ambiguous + " has 167808 bytes, which fit several kinds of record; choose --kind services or "
                + "--kind networks\n",
                ambiguous, "1");
        assertFails("no service list 9 in " + storage() + "; it has service lists 1, 2\n", "9", "1");
        assertEquals(new Result(2, "", "tavro: diff: unknown field 'lnc' in --ignore: use a constant of "
                + "docs/record-layouts.md, as in service_id, or order or unnamed_bytes\nSee: ./tavro diff --help\n"),
                diff("1", "2", "--ignore", "name,lnc"));
        assertEquals(2, diff("1").exit());
    }

    private static void assertFails(String message, String... arguments) {
        assertEquals(new Result(1, "", "tavro: " + message), diff(arguments));
    }
}
