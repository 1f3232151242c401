package com.velotra.tv.tavro.tool;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.services.channellist.VltTvNetworkInfoBase;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** The export command, and the import of what it wrote. */
class ExportCommandTest {
    private static final String HEADER =
            "kind,list_id,flags,record_id,nwl_id,network_id,version,name,unnamed_bytes\n";
    private static final String UNO = "networks,5,0x00000000,1,0,101,0,Uno,\n";
    private static final String DUE = "networks,5,0x00000000,2,0,102,0,Due,\n";

    private static final String UNUSABLE =
            "tavro: nothing was imported; 1 file cannot be used; see the messages above\n";

    private final VltTvNetworkList networks = VltTvNetworkList.getInstance();

    @TempDir
    Path folder;

    @BeforeEach
    void addTwoNetworks() {
        networks.open(5);
        for (int i = 0; i < 2; i++) {
            VltTvNetworkInfoBase info = new VltTvNetworkInfoBase();
            info.setNwlNetworkId(101 + i);
            info.setNetworkName(List.of("Uno", "Due").get(i));
            networks.add(5, info);
        }
    }

    @AfterEach
    void deleteLists() {
        for (int id : List.of(5, 6)) {
            if (networks.exists(id)) {
                networks.delete(id);
            }
        }
    }

    private Path file(String content) throws Exception {
        return Files.writeString(folder.resolve("list.csv"), content);
    }

    private static Result export() {
        return ToolProcess.runHere("export", "5", "-k", "networks");
    }

    private void assertImported(String summary, String csvAfter, String csv, String... options) throws Exception {
        String[] words = new String[options.length + 2];
        words[0] = "import";
        words[1] = file(csv).toString();
        System.arraycopy(options, 0, words, 2, options.length);
        assertEquals(new Result(0, "1 file: " + summary + "\n", ""), ToolProcess.runHere(words));
        assertEquals(new Result(0, csvAfter, ""), export());
    }

    @Test
    void aListIsWrittenToStandardOutput() {
        assertEquals(new Result(0, HEADER + UNO + DUE, ""), export());
    }

    @Test
    void aFileIsReplacedOnlyWhenAllIsWritten() throws Exception {
        Path file = file("old");
        assertEquals(new Result(0, "", ""),
                ToolProcess.runHere("export", "5", "-k", "networks", "-o", file.toString()));
        assertEquals(HEADER + UNO + DUE, Files.readString(file));
        assertEquals(1, folder.toFile().list().length);
        Path missing = folder.resolve("missing/list.csv");
        assertEquals(new Result(1, "", "tavro: cannot write " + missing + ": no such file or folder\n"),
                ToolProcess.runHere("export", "5", "-k", "networks", "-o", missing.toString()));
    }

    @Test
    void allListsGoIntoOneFileAndComeBack() throws Exception {
        networks.open(6);
        networks.add(6, new VltTvNetworkInfoBase());
        Path file = folder.resolve("all.json");
        assertEquals(0, ToolProcess.runHere("export", "--all", "-o", file.toString()).exit());
        String exported = Files.readString(file);
        deleteLists();
        assertEquals(new Result(0, """
                1 file: 3 networks; 0 malformed lines
                network list 5: 2 added, 0 changed, 0 removed, 0 unchanged
                network list 6: 1 added, 0 changed, 0 removed, 0 unchanged
                """, ""), ToolProcess.runHere("import", file.toString()));
        assertEquals(exported, ToolProcess.runHere("export", "--all", "--format", "json").out());
    }

    @Test
    void allListsOfAnEmptyStorageAreNone() {
        deleteLists();
        assertEquals(new Result(0, """
                {
                  "format": "tavro lists",
                  "version": 1,
                  "lists": []
                }
                """, ""), ToolProcess.runHere("export", "--all"));
    }

    @Test
    void rowsReplaceAddAndReorderAndOthersFollow() throws Exception {
        assertImported("2 networks; 0 malformed lines\n"
                + "network list 5: 1 added, 1 changed (2 fields), 0 removed, 1 unchanged, in another order",
                HEADER + "networks,5,0x00000000,2,0,7,3,Due,\n" + "networks,5,0x00000000,3,0,9,0,Tre,\n" + UNO,
                "record_id,network_id,version,name\n2,7,3,Due\n,9,,Tre\n", "--list", "5");
    }

    @Test
    void replaceRemovesRecordsWithoutARow() throws Exception {
        assertImported("1 network; 0 malformed lines\nnetwork list 5: 0 added, 0 changed, 1 removed, 1 unchanged",
                HEADER + DUE, "record_id,kind\n2,networks\n", "--list", "5", "--replace");
    }

    /** Imports a file that is wrong, and checks that the list stays as it is. */
    private void assertRefused(String out, String err, String content, String... options) throws Exception {
        String[] words = new String[options.length + 2];
        words[0] = "import";
        words[1] = file(content).toString();
        System.arraycopy(options, 0, words, 2, options.length);
        assertEquals(new Result(1, out, err.replace("FILE", words[1])), ToolProcess.runHere(words));
        assertEquals(new Result(0, HEADER + UNO + DUE, ""), export());
    }

    private static String rows(int count, int malformed) {
        return "1 file: " + count + " networks; " + malformed + " malformed lines\n";
    }

    private static String nothing(int malformed) {
        return "tavro: nothing was imported: " + malformed
                + " malformed lines; correct the files, or import the rest with --partial\n";
    }

    @Test
    void allBadRowsAreReportedWithLineColumnAndValue() throws Exception {
        assertRefused(rows(7, 7), """
                  malformed line FILE:2: column network_id: 'x' cannot be the network id: it must be a number from 0 \
                to 65535
                  malformed line FILE:2: column unnamed_bytes: '12:00' names byte 12, which belongs to a field of the \
                record
                  malformed line FILE:3: column record_id: 65535 cannot be the id of a record
                  malformed line FILE:5: column record_id: 3 is also in line 4
                  malformed line FILE:7: 3 cells; the first row has 5 cells
                  malformed line FILE:8: column kind: 'streams' here, and 'networks' above; a file has one list
                  malformed line FILE:9: column record_id: '-1' cannot be the record id: it must be a number from 0 \
                to 65535
                """ + nothing(7), """
                kind,record_id,network_id,name,unnamed_bytes
                networks,1,x,Uno,12:00
                networks,65535,1,Uno,
                networks,3,1,Uno,
                networks,3,1,"Two
                lines",
                networks,3,1
                streams,4,1,Uno,
                ,-1,1,Uno,
                """, "--list", "5");
    }

    @Test
    void twentyBadRowsAreShownAndTheOthersCounted() throws Exception {
        Result result = ToolProcess.runHere("import", "--list", "5",
                file("record_id,version\n" + "1,256\n".repeat(30)).toString());
        assertEquals(22, result.err().lines().count(), result.err());
        assertEquals(rows(30, 30), result.out());
    }

    @Test
    void withPartialOnlyTheRowsWithoutProblemsAreImported() throws Exception {
        String content = "record_id,network_id,version\n2,7,1\n1,7,x\n,8,\n";
        assertEquals(new Result(1, "1 file: 3 networks; 1 malformed line\n"
                + "network list 5: 1 added, 1 changed (2 fields), 0 removed, 1 unchanged, in another order\n",
                "  malformed line " + file(content)
                + ":3: column version: 'x' cannot be the version: it must be a number from 0 to 255\n"),
                ToolProcess.runHere("import", "--list", "5", "--partial", "--replace", file(content).toString()));
        assertEquals(HEADER + "networks,5,0x00000000,2,0,7,1,Due,\n" + UNO + "networks,5,0x00000000,3,0,8,0,,\n",
                export().out());
    }

    @Test
    void replaceRemovesNothingWhileARowIsBad() throws Exception {
        String content = "record_id,network_id,version\n1,7\n";
        assertRefused("1 file: 1 network; 1 malformed line\n"
                + "network list 5: 0 added, 0 changed, 0 removed, 2 unchanged\n",
                "  malformed line FILE:2: 2 cells; the first row has 3 cells\n", content, "--list", "5", "--partial",
                "--replace", "--kind", "networks");
    }

    @Test
    void aDryRunPrintsWhatWouldChangeAndChangesNothing() throws Exception {
        assertEquals(new Result(0, "1 file: 1 network; 0 malformed lines\n"
                + "network list 5: 0 added, 1 changed (1 field), 0 removed, 1 unchanged\n"
                + "dry run: nothing was changed\n", ""),
                ToolProcess.runHere("import", "-n", "--list", "5",
                "--kind", "networks", file("record_id,network_id\n1,7\n").toString()));
        assertEquals(HEADER + UNO + DUE, export().out());
    }

    @Test
    void columnsThatAreWrongAreNamed() throws Exception {
        String known = "flags, record_id, nwl_id, network_id, version, name, unnamed_bytes";
        assertRefused("", "tavro: cannot import FILE: unknown column 'nme'; networks have " + known + "\n" + UNUSABLE,
                "kind,list_id,record_id,nme\nnetworks,5,1,Uno\n");
        assertRefused("",
                "tavro: cannot import FILE: no kind of list has all these columns: 'record_id, nme'\n" + UNUSABLE,
                "record_id,nme\n1,Uno\n", "--list", "5");
        assertRefused("",
                "tavro: cannot import FILE: the columns do not show which kind of list this is; add a column "
                        + "kind, or use --kind\n" + UNUSABLE, "record_id,name\n1,Uno\n", "--list", "5");
        assertRefused("", "tavro: cannot import FILE: it has networks, not services\n" + UNUSABLE,
                "kind,record_id\nnetworks,1\n", "--list", "5", "--kind", "services");
        assertRefused("",
                "tavro: cannot import FILE: column kind: 'lists' is not services, streams, networks or satellites\n"
                + UNUSABLE, "kind,record_id\nlists,1\n", "--list", "5");
        assertRefused("", "tavro: cannot import FILE: a column appears twice\n" + UNUSABLE,
                "kind,record_id,name,name\nnetworks,1,a,b\n", "--list", "5");
        assertRefused("", "tavro: cannot import FILE: it does not say which list it is; use --list ID\n",
                "kind,record_id\nnetworks,1\n");
    }

    @Test
    void filesThatAreNotCsvOrJsonAreRefusedWithTheLine() throws Exception {
        assertRefused("", "tavro: cannot import FILE: line 2: it is not valid CSV: text after the quotation mark that "
                + "closes a cell; write a \" in a cell as \"\"\n" + UNUSABLE,
                "record_id,name\n1,\"Uno\"x\n", "--list", "5");
        assertRefused("", "tavro: cannot import FILE: line 3: it is not valid CSV: the quotation mark of a cell that "
                + "begins here is not closed; add a \" at the end of the cell\n" + UNUSABLE,
                "record_id,name\n1,Uno\n2,\"Due\n3,Tre\n", "--list", "5");
        String begin = "{\"format\": \"tavro lists\",\n\"version\": ";
        assertRefused("", "tavro: cannot import FILE: line 2: this version of the tool reads version 1 of the format\n"
                + UNUSABLE, begin + "2, \"lists\": []}");
        assertRefused("", "tavro: cannot import FILE: line 3: it ends early\n" + UNUSABLE,
                begin + "1, \"lists\": [\n{\"kind\": \"networks\"");
        assertRefused("", "tavro: cannot import FILE: line 4: it is not valid JSON\n" + UNUSABLE,
                begin + "1, \"lists\": [\n{\"kind\": \"networks\", \"list_id\": 5, \"records\": [\n{1}]}]}");
        assertRefused("", "tavro: cannot import FILE: line 3: a value must be a number or a string\n" + UNUSABLE, begin
                + "1, \"lists\": [\n{\"kind\": \"networks\", \"list_id\": 5, \"records\": [{\"record_id\": [1]}]}]}");
        assertRefused(rows(1, 1).replace("networks", "network").replace("lines", "line"),
                "  malformed line FILE:3: record 1: column version: '1.5' "
                        + "cannot be the version: it must be a number from 0 to 255\n"
                + nothing(1).replace("lines", "line"),
                begin + "1, \"lists\": [{\"kind\": \"networks\", \"list_id\": 5, "
                + "\"records\": [\n{\"record_id\": 1, \"version\": 1.5}]}]}");
    }

    @Test
    void badRecordsOfJsonOnOneLineAreNamedByTheirPosition() throws Exception {
        assertRefused(rows(3, 2), """
                  malformed line FILE:1: record 2: column version: 'x' cannot be the version: it must be a number \
                from 0 to 255
                  malformed line FILE:1: record 3: column record_id: 1 is also in record 1
                """ + nothing(2), "{\"format\": \"tavro lists\", \"version\": 1, \"lists\": [{\"kind\": \"networks\", "
                + "\"list_id\": 5, \"records\": [{\"record_id\": 1}, {\"record_id\": 2, \"version\": \"x\"}, "
                + "{\"record_id\": 1}]}]}");
    }

    @Test
    void aFullListHasNoRecordIdForANewRow() throws Exception {
        StringBuilder rows = new StringBuilder("record_id,network_id\n");
        for (int id = 1; id <= 0xFFFE; id++) {
            rows.append(id).append(",1\n");
        }
        assertRefused("1 file: 65535 networks; 1 malformed line\n",
                "  malformed line FILE:1: network list 5 is full: no record id is free\n"
                + nothing(1).replace("lines;", "line;"), rows.append(",2\n").toString(), "--list", "5",
                "--kind", "networks");
    }

    @Test
    void whatASpreadsheetSavesIsRead() throws Exception {
        assertImported("2 networks; 0 malformed lines\n"
                + "network list 5: 0 added, 2 changed (3 fields), 0 removed, 0 unchanged",
                HEADER + "networks,5,0x00000000,1,0,101,1,'007,\n" + "networks,5,0x00000000,2,0,102,2,Due,\n",
                "\uFEFF\"record_id\";Name;VERSION;list-id;KIND\r\n1;\"007\";1;5;networks\r\n2;Due;2;5;networks\r\n"
                        + ";;;;\r\n");
    }

    @Test
    void csvInAnotherEncodingIsRefusedWithTheLine() throws Exception {
        Path file = folder.resolve("list.csv");
        String csv = "record_id,name,list_id,kind\n1,Grün,5,networks\n2,Größe,5,networks\n";
        byte[] bytes = csv.getBytes(StandardCharsets.UTF_8);
        bytes[csv.getBytes(StandardCharsets.UTF_8).length - 16] = (byte) 0xE4; // in the second name
        Files.write(file, bytes);
        assertEquals(new Result(1, "", "tavro: cannot import " + file
                + ": line 3 is not UTF-8; save the file with this encoding\n" + UNUSABLE),
                ToolProcess.runHere("import", file.toString()));
        assertEquals(HEADER + UNO + DUE, export().out());
    }

    @Test
    void jsonWithAByteOrderMarkAndManyLettersIsRead() throws Exception {
        for (int blanks = 0; blanks < 2; blanks++) { // of two characters, one has a boundary within
            assertImported("nothing to import; 0 malformed lines", HEADER + UNO + DUE,
                    "\uFEFF{\"format\": \"tavro lists\"," + " ".repeat(blanks) + "\"version\": 1, \"text\": \""
                            + "ä".repeat(4096) + "\", \"lists\": []}");
        }
    }

    @Test
    void wrongUsageIsReported() {
        String see = "\nSee: ./tavro export --help\n";
        assertEquals(new Result(2, "", "tavro: export: give a list id or --all" + see), ToolProcess.runHere("export"));
        assertEquals(new Result(2, "",
                "tavro: export: unknown format 'xml': use csv, json, vdr, dvbv5, tif, tif-json" + see),
                ToolProcess.runHere("export", "1", "-f", "xml"));
        assertEquals(new Result(2, "", "tavro: export: --all needs --format json: other files have one list" + see),
                ToolProcess.runHere("export", "--all", "-f", "csv"));
        assertEquals(new Result(2, "", "tavro: export: the format vdr has no streams: export services" + see),
                ToolProcess.runHere("export", "1", "-f", "vdr", "-k", "streams"));
        assertEquals(new Result(2, "",
                "tavro: export: the format dvbv5 has no networks: export services or streams" + see),
                ToolProcess.runHere("export", "1", "-f", "dvbv5", "-k", "networks"));
        assertEquals(new Result(2, "", "tavro: export: the format tif has no networks: export services" + see),
                ToolProcess.runHere("export", "1", "-f", "tif", "-k", "networks"));
        assertEquals(1, ToolProcess.runHere("export", "9", "-k", "networks").exit());
    }
}
