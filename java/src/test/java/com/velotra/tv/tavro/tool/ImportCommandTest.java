package com.velotra.tv.tavro.tool;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.services.channellist.TvList;
import com.velotra.tv.tavro.services.channellist.VltTvChannelList;
import com.velotra.tv.tavro.services.channellist.VltTvNetworkList;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteList;
import com.velotra.tv.tavro.services.channellist.VltTvTransportStreamList;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import java.io.ByteArrayInputStream;
import java.io.InputStream;
import java.nio.channels.FileChannel;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.util.List;
import java.util.stream.IntStream;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** The import command, from files to lists and summary. */
class ImportCommandTest {
    private static final String CABLE =
            "[Uno]\nDELIVERY_SYSTEM = DVBC/ANNEX_A\nFREQUENCY = 330000000\nSYMBOL_RATE = 6900000\n";
    private static final String FORMATS =
            "supported: CSV and JSON of an export, DVBv5 tables, one-line scan tables, and vdr's channels.conf, "
            + "sources.conf and diseqc.conf";

    private static final String CORRECT = "; correct the files, or import the rest with --partial\n";

    @TempDir
    Path folder;

    @AfterEach
    void deleteLists() {
        for (int id = 41; id <= 43; id++) {
            for (TvList kind : List.of(VltTvChannelList.getInstance(), VltTvTransportStreamList.getInstance(),
                    VltTvNetworkList.getInstance(), VltTvSatelliteList.getInstance())) {
                if (kind.exists(id)) {
                    kind.delete(id);
                }
            }
        }
    }

    private Path file(String name, String content) throws Exception {
        return Files.writeString(folder.resolve(name), content);
    }

    private static Result imported(Object... files) {
        String[] words = new String[files.length + 3];
        words[0] = "import";
        words[1] = "--list";
        words[2] = "41";
        for (int i = 0; i < files.length; i++) {
            words[i + 3] = files[i].toString();
        }
        return ToolProcess.runHere(words);
    }

    @Test
    void transpondersFillTransportStreamListsThatListAndShowPrint() throws Exception {
        assertEquals(
                new Result(0,
                        """
                        1 file: 1 transponder; 0 malformed lines
                        Transport streams, by delivery system:
                               1  DVBC/ANNEX_A
                        transport stream list 42: 1 added, 0 changed, 0 unchanged; it holds 1 record
                        """,
                        ""),
                imported(file("table", CABLE)));
        assertEquals(
                """
                record  standard  frequency  symbol rate  stream id  original network id  network record  name
                     1  DVB-C        330000      6900000          0                    0  -               Uno
                1 transport stream
                """,
                ToolProcess.runHere("list", "42", "--kind", "streams").out());
        Result show = ToolProcess.runHere("show", "42,1", "-k", "streams", "--hex");
        assertTrue(show.out().contains("\nfrequency                      330000 kHz\n"), show.out());
        assertTrue(show.out().contains("\n0000  01 00 "), show.out());
        assertEquals(1, ToolProcess.runHere("list", "41", "--kind", "streams").exit());
    }

    @Test
    void theFilesOfAFolderAreTakenInTheOrderOfTheirNames() throws Exception {
        Path data = Files.createDirectory(folder.resolve("data"));
        for (int file = 100; file < 300; file++) { // the first ones are the longest
            Files.writeString(data.resolve("table" + file), String.format(
                    "[N%d]\nDELIVERY_SYSTEM = DVBC/ANNEX_A\nFREQUENCY = %d000000\n%s", file, file,
                    "# a comment\n".repeat((300 - file) * 20)));
        }
        assertEquals(0, imported(data).exit());
        List<String> names = ToolProcess.runHere("list", "42", "--kind", "streams").out().lines()
                .filter(line -> line.matches(".* N\\d+"))
                .map(line -> line.substring(line.lastIndexOf(' ') + 1))
                .toList();
        assertEquals(IntStream.range(100, 300).mapToObj(file -> "N" + file).toList(), names);
    }

    @Test
    void transpondersReferToSatellitesWhateverTheFileOrder() throws Exception {
        Path data = Files.createDirectory(folder.resolve("data"));
        String transponder = "[CHANNEL]\nDELIVERY_SYSTEM = DVBS2\nFREQUENCY = 11362000\n";
        Files.writeString(data.resolve("Astra-19.2E"), transponder);
        Files.writeString(data.resolve("dishes"), "S19.2E 99999 V 10600 [E0 10 38 F4]\n");
        Files.writeString(data.resolve("positions"), "S13E Uno\nS19.2E Due\nC Cable\n");
        assertEquals(
                new Result(0,
                        """
                        3 files: 1 dish setting, 2 satellites, 1 transponder; 0 malformed lines
                        Transport streams, by delivery system:
                               1  DVBS2
                        Skipped, by reason:
                               1  not a satellite (source C)
                        1 satellite with dish settings
                        satellite list 43: 2 added, 0 changed, 0 unchanged; it holds 2 records
                        transport stream list 43: 1 added, 0 changed, 0 unchanged; it holds 1 record
                        """,
                        ""),
                imported(data));
        assertEquals(
                """
                record  position  name  in use  LNB        DiSEqC
                     1    S13.0E  Uno   no      -          -
                     2    S19.2E  Due   yes     10600 MHz  port 1
                2 satellites
                """,
                ToolProcess.runHere("list", "43", "--kind", "satellites").out());
        String stream = ToolProcess.runHere("show", "43,1", "--kind", "streams").out();
        assertTrue(stream.contains("""

                satellite list                 43
                satellite record               2 (43,2 "Due")
                """), stream);
        assertEquals(0, imported(file("Due-13.0E", transponder)).exit());
        assertTrue(ToolProcess.runHere("show", "43,2", "--kind", "streams").out()
                .contains("\nsatellite record               1 (43,1 \"Uno\")\n"));
    }

    @Test
    void servicesFillServiceStreamAndNetworkLists() throws Exception {
        Path channels = file("list.txt",
                "Uno:410:M64:C:6900:101:102:0:0:7:1:1019:0\nDue:410:M64:C:6900:201:202:0:0:8:1:1019:0\n");
        assertEquals(
                new Result(0,
                        """
                        1 file: 2 services; 0 malformed lines
                        Transport streams, by delivery system:
                               1  DVBC/ANNEX_A
                        transport stream list 42: 1 added, 0 changed, 0 unchanged; it holds 1 record
                        network list 42: 1 added, 0 changed, 0 unchanged; it holds 1 record
                        service list 42: 2 added, 0 changed, 0 unchanged; it holds 2 records
                        """,
                        ""),
                imported(channels));
        assertEquals(
                """
                record  LCN  name  service id  type  scrambled  shown  transport stream  frequency
                     1    -  Uno            7  TV    no         yes    42,1                 410000
                     2    -  Due            8  TV    no         yes    42,1                 410000
                2 services
                """,
                ToolProcess.runHere("list", "42").out());
    }

    @Test
    void aSecondImportUpdatesAndReportsWhatChanged() throws Exception {
        Path channels = file("channels",
                "Uno:410:M64:C:6900:101:102:0:0:7:1:1019:0\nDue:418:M64:C:6900:201:202:0:0:8:1:1020:0\n");
        Path satellites = file("satellites", "S13E Uno\nS19.2E Due\n");
        assertEquals(0, imported(channels, satellites).exit());
        assertEquals(
                """
                satellite list 43: 0 added, 0 changed, 2 unchanged; it holds 2 records
                transport stream list 42: 0 added, 0 changed, 2 unchanged; it holds 2 records
                network list 42: 0 added, 0 changed, 1 unchanged; it holds 1 record
                service list 42: 0 added, 0 changed, 2 unchanged; it holds 2 records
                """,
                lists(imported(channels, satellites)));
        file("channels", "Uno:410:M256:C:6900:101:102:0:0:7:1:1019:0\nDue HD:418:M64:C:6900:201:202:0:0:8:1:1020:0\n"
                + "Tre:418:M64:C:6900:201:202:0:0:9:1:1020:0\nTre:418:M64:C:6900:201:202:0:0:9:1:1020:0\n");
        file("satellites", "S13E Uno Nuovo\nS5W Tre\n");
        assertEquals(
                """
                satellite list 43: 1 added, 1 changed, 0 unchanged; it holds 3 records
                transport stream list 42: 0 added, 1 changed, 1 unchanged; it holds 2 records
                network list 42: 0 added, 0 changed, 1 unchanged; it holds 1 record
                service list 42: 1 added, 1 changed, 1 unchanged, 1 repeated in the files; it holds 3 records
                """,
                lists(imported(channels, satellites)));
        String services = ToolProcess.runHere("list", "42").out();
        assertTrue(services.contains("  Due HD  ") && services.contains("3 services"), services);
    }

    private static String lists(Result result) {
        assertEquals(0, result.exit(), result.err());
        StringBuilder lines = new StringBuilder();
        result.out().lines().filter(line -> line.contains(" list ")).forEach(line -> lines.append(line).append('\n'));
        return lines.toString();
    }

    @Test
    void standardInputIsImported() {
        InputStream before = System.in;
        System.setIn(new ByteArrayInputStream(CABLE.getBytes(StandardCharsets.UTF_8)));
        try {
            Result result = imported("-");
            assertEquals(0, result.exit(), result.err());
            assertTrue(result.out().startsWith("1 file: 1 transponder; 0 malformed lines\n"), result.out());
        } finally {
            System.setIn(before);
        }
    }

    @Test
    void aPipeIsImported() throws Exception {
        Path pipe = folder.resolve("pipe");
        assertEquals(0, new ProcessBuilder("mkfifo", pipe.toString()).start().waitFor());
        Process writer = new ProcessBuilder("sh", "-c", "printf '%s' \"$1\" >\"$2\"", "sh", CABLE, pipe.toString())
                .start();
        Result result = imported(pipe);
        assertEquals(0, writer.waitFor());
        assertEquals(0, result.exit(), result.err());
        assertTrue(result.out().startsWith("1 file: 1 transponder; 0 malformed lines\n"), result.out());
    }

    @Test
    void linksAreFollowedAndALinkToAFolderAboveIsNoTrouble() throws Exception {
        Path data = Files.createDirectory(folder.resolve("data"));
        Files.writeString(data.resolve("table"), CABLE);
        Files.createSymbolicLink(data.resolve("loop"), data);
        Files.createSymbolicLink(data.resolve("nowhere"), folder.resolve("missing"));
        Result result = imported(Files.createSymbolicLink(folder.resolve("link"), data));
        assertEquals("", result.err());
        assertEquals(0, result.exit());
        assertTrue(result.out().startsWith("1 file: 1 transponder; 0 malformed lines\n"), result.out());
    }

    @Test
    void aFileThatCannotBeUsedFailsTheImport() throws Exception {
        Path missing = folder.resolve("missing");
        Path image = Files.write(folder.resolve("channels.conf"), new byte[] {(byte) 0x89, 'P', 'N', 'G', 0, 0});
        assertEquals(
                new Result(1, "1 file: 1 transponder; 0 malformed lines\n",
                        "tavro: cannot import " + image + ": it is a PNG image\n"
                        + "tavro: cannot read " + missing + ": no such file or folder\n"
                        + "tavro: nothing was imported: 2 unusable files" + CORRECT),
                imported(image, file("table", CABLE), missing));
        assertFalse(VltTvTransportStreamList.getInstance().exists(42));
    }

    @Test
    void withPartialTheUsableFilesAreImported() throws Exception {
        Path missing = folder.resolve("missing");
        Path image = Files.write(folder.resolve("channels.conf"), new byte[] {(byte) 0x89, 'P', 'N', 'G', 0, 0});
        Result result = imported("--partial", image, file("table", CABLE), missing);
        assertEquals(1, result.exit());
        assertEquals(
                "tavro: cannot import " + image + ": it is a PNG image\n"
                        + "tavro: cannot read " + missing + ": no such file or folder\n",
                result.err());
        assertTrue(result.out().endsWith(
                "transport stream list 42: 1 added, 0 changed, 0 unchanged; it holds 1 record\n"), result.out());
    }

    @Test
    void aFileInAFolderThatCannotBeReadFailsTheImport() throws Exception {
        Path data = Files.createDirectory(folder.resolve("data"));
        Files.writeString(data.resolve("table"), CABLE);
        Path unreadable = Files.createSymbolicLink(data.resolve("unreadable"), Path.of("/proc/self/mem"));
        Result result = imported(data);
        assertEquals("tavro: cannot read " + unreadable + ": Input/output error\n"
                + "tavro: nothing was imported: 1 unusable file" + CORRECT, result.err());
        assertEquals(1, result.exit());
        assertTrue(result.out().startsWith("1 file: 1 transponder; 0 malformed lines\n"), result.out());
    }

    @Test
    void importsOfSeveralProcessesWaitForEachOther() throws Exception {
        Path home = Path.of(System.getenv("TAVRO_HOME"));
        Path table = file("table", CABLE);
        List<String> command =
                ToolProcess.command(System.getProperty("java.library.path"), "import", "--list", "41",
                        table.toString());
        Process other;
        try (FileChannel lock = FileChannel.open(home.resolve("changes.lock"), StandardOpenOption.CREATE,
                StandardOpenOption.WRITE)) {
            lock.lock();
            other = new ProcessBuilder(command).start();
            assertEquals("  waiting for another command that changes lists …",
                    other.errorReader(StandardCharsets.UTF_8).readLine());
            assertFalse(VltTvTransportStreamList.getInstance().exists(42));
        }
        assertEquals(0, other.waitFor());
        assertEquals(1, VltTvTransportStreamList.getInstance().getAll(42).size());
    }

    @Test
    void withoutAnyUsableFileTheImportFails() throws Exception {
        Path text = file("letter", "Dear all,\nnothing here.\n");
        assertEquals(
                new Result(1, "", "tavro: cannot import " + text + ": unknown format; " + FORMATS
                        + "\ntavro: nothing was imported; 1 file cannot be used; see the messages above\n"),
                imported(text));
        Path empty = Files.createDirectory(folder.resolve("empty"));
        String nothing = "tavro: nothing was imported; no file is in a known format; " + FORMATS + "\n";
        assertEquals(new Result(1, "", nothing), imported(empty));
        Path more = Files.writeString(empty.resolve("comments"), "# nothing\n\n");
        assertEquals(
                new Result(1, "", "  cannot import " + more + ": it has nothing but blank lines and comments\n"
                        + nothing),
                imported(empty));
        assertFalse(VltTvTransportStreamList.getInstance().exists(42));
    }

    @Test
    void aMalformedLineFailsTheImportAndNothingIsStored() throws Exception {
        Path table = file("table", CABLE + "nonsense\n[Due]\nFREQUENCY = 330000000\n");
        assertEquals(
                new Result(1,
                        """
                        1 file: 2 transponders; 1 malformed line
                        Not imported, by reason:
                               1  no delivery system
                        """,
                        "  malformed line " + table
                                + ":5: 'nonsense' is neither a heading nor of the form KEY = VALUE\n"
                                + "  not imported " + table + ":6: no delivery system\n"
                                + "tavro: nothing was imported: 1 malformed line, 1 entry without a record" + CORRECT),
                imported(table));
        assertFalse(VltTvTransportStreamList.getInstance().exists(42));
    }

    @Test
    void aDryRunSaysWhatWouldChangeAndChangesNothing() throws Exception {
        Path channels = file("channels", "Uno:410:M64:C:6900:101:102:0:0:7:1:1019:0\n");
        assertEquals(0, imported(channels).exit());
        file("channels", "Uno HD:410:M64:C:6900:101:102:0:0:7:1:1019:0\nDue:418:M64:C:6900:101:102:0:0:8:1:1020:0\n");
        String lists = ToolProcess.runHere("lists").out();
        assertEquals(new Result(0, """
                1 file: 2 services; 0 malformed lines
                Transport streams, by delivery system:
                       2  DVBC/ANNEX_A
                transport stream list 42: 1 added, 0 changed, 1 unchanged; it holds 2 records
                network list 42: 0 added, 0 changed, 1 unchanged; it holds 1 record
                service list 42: 1 added, 1 changed, 0 unchanged; it holds 2 records
                dry run: nothing was changed
                """, ""), imported("--dry-run", channels));
        assertEquals(lists, ToolProcess.runHere("lists").out());
        InputStream before = System.in;
        System.setIn(new ByteArrayInputStream((CABLE + "nonsense\n").getBytes(StandardCharsets.UTF_8)));
        try {
            assertEquals(new Result(1, "1 file: 1 transponder; 1 malformed line\ndry run: nothing was changed\n",
                    "  malformed line standard input:5: 'nonsense' is neither a heading nor of the form KEY = VALUE\n"
                    + "tavro: nothing was imported: 1 malformed line" + CORRECT), imported("-n", "-"));
        } finally {
            System.setIn(before);
        }
    }

    @Test
    void withPartialTheRestOfAMalformedFileIsStored() throws Exception {
        Path table = file("table", CABLE + "nonsense\n[Due]\nFREQUENCY = 330000000\n");
        assertEquals(
                new Result(1,
                        """
                        1 file: 2 transponders; 1 malformed line
                        Transport streams, by delivery system:
                               1  DVBC/ANNEX_A
                        Not imported, by reason:
                               1  no delivery system
                        transport stream list 42: 1 added, 0 changed, 0 unchanged; it holds 1 record
                        """,
                        "  malformed line " + table
                                + ":5: 'nonsense' is neither a heading nor of the form KEY = VALUE\n"
                                + "  not imported " + table + ":6: no delivery system\n"),
                imported("--partial", table));
    }

    @Test
    void manyProblemsOfOneKindAreShownTwentyTimesAndCounted() throws Exception {
        Path table = file("table", CABLE + "[Due]\nFREQUENCY = 330000000\n".repeat(25));
        Result result = imported(table);
        assertEquals(1, result.exit());
        assertEquals(22, result.err().lines().count(), result.err());
        assertTrue(result.err().endsWith("  … more of these (no delivery system) are counted in the summary\n"
                + "tavro: nothing was imported: 25 entries without a record" + CORRECT), result.err());
        assertTrue(result.out().contains("\n      25  no delivery system\n"), result.out());
    }

    @Test
    void aLongImportReportsItsProgress() throws Exception {
        StringBuilder lines = new StringBuilder();
        for (int i = 0; i < 2001; i++) {
            lines.append("T ").append(474_000_000 + i % 3 * 8_000_000).append(" 8MHz\n");
        }
        assertEquals("  1000 of 2001 transponders\n  2000 of 2001 transponders\n",
                imported(file("table", lines.toString())).err());
    }

    @Test
    void theFirstListLeavesRoomForThree() {
        assertEquals(
                new Result(2, "",
                        "tavro: import: '65534' is not a first list id: "
                        + "it must be from 1 to 65533\nSee: ./tavro import --help\n"),
                ToolProcess.runHere("import", "--list", "65534", "x"));
        for (String id : List.of("0", "65536", "70000", "-5")) {
            assertEquals(2, ToolProcess.runHere("import", "--list=" + id, "x").exit(), id);
        }
    }
}
