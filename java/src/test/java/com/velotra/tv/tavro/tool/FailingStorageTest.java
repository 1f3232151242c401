package com.velotra.tv.tavro.tool;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;
import static org.junit.jupiter.api.Assumptions.assumeTrue;

import com.velotra.tv.tavro.tool.ToolProcess.Result;
import java.io.BufferedReader;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.util.ArrayList;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Storage that cannot be read or written: one message, exit code 1, and nothing is lost. */
class FailingStorageTest {
    @TempDir
    Path folder;

    private Path home;
    private Path satellites;
    private Path transponders;

    @BeforeEach
    void writeFiles() throws IOException {
        home = Files.createDirectory(folder.resolve("home"));
        satellites = Files.writeString(folder.resolve("satellites"), "S13E Uno\nS19.2E Due\n");
        StringBuilder lines = new StringBuilder();
        for (int i = 0; i < 2000; i++) {
            lines.append("C ").append(100_000_000 + i * 10_000).append(" 6900000 NONE QAM256\n");
        }
        transponders = Files.writeString(folder.resolve("transponders"), lines.toString());
    }

    private Result tool(String... arguments) throws Exception {
        return ToolProcess.run(folder, Map.of("TAVRO_HOME", home.toString()), arguments);
    }

    /** Runs a script, in which $@ is the tool, in a new mount namespace, so that it can mount over home. */
    private Result inNamespace(String script) throws Exception {
        List<String> unshare = List.of("unshare", "--map-root-user", "--mount");
        List<String> probe = new ArrayList<>(unshare);
        probe.addAll(List.of("mount", "-t", "tmpfs", "tmpfs", home.toString()));
        assumeTrue(ToolProcess.run(probe, folder, folder.resolve("out"), Map.of()) == 0,
                "this kernel does not let users mount file systems of their own");
        List<String> command = new ArrayList<>(unshare);
        command.addAll(List.of("sh", "-c", script, "sh"));
        command.addAll(ToolProcess.command(System.getProperty("java.library.path")));
        Files.deleteIfExists(folder.resolve("out"));
        int exit = ToolProcess.run(command, folder, folder.resolve("out"), Map.of("TAVRO_HOME", home.toString()));
        return new Result(exit, Files.readString(folder.resolve("out")), Files.readString(folder.resolve("err")));
    }

    private static long toolLines(Result result) {
        return result.err().lines().filter(line -> line.startsWith("tavro: ")).count();
    }

    @Test
    void aFullDiskStopsTheImportAtOnceAndTheListsAreRestored() throws Exception {
        Result result = inNamespace("mount -t tmpfs -o size=600k tmpfs " + home + " && \"$@\" import --list 1 "
                + transponders + " || { \"$@\" lists; exit 1; }");
        assertEquals(1, result.exit(), result.err());
        assertEquals(1, toolLines(result), result.err());
        assertTrue(result.err().endsWith(
                "tavro: the import stopped: cannot add a transport stream to list 2; no space left on the file "
                + "system of " + home + "; free some space\n"
                + "no lists in " + home + "; ./tavro import makes some\n"), result.err());
        assertEquals("", result.out());
    }

    @Test
    void aReadOnlyFileSystemStopsTheImportAtOnce() throws Exception {
        Result result = inNamespace("mount -t tmpfs tmpfs " + home + " && \"$@\" import --list 1 " + satellites
                + " >/dev/null && mount -o remount,ro " + home + " && \"$@\" import --list 1 " + transponders);
        assertEquals(1, result.exit(), result.err());
        assertEquals(1, toolLines(result), result.err());
        assertTrue(result.err().contains(home.toString()), result.err());
    }

    @Test
    void aLockedDatabaseStopsTheImportWithTheReason() throws Exception {
        assertEquals(0, tool("import", "--list", "1", satellites.toString()).exit());
        Process holder = new ProcessBuilder("sqlite3", "-batch", home.resolve("lists.db").toString()).start();
        try (BufferedReader output = holder.inputReader()) {
            holder.outputWriter()
                    .append("PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE; UPDATE lists SET version = version;\n"
                    + "SELECT 'held';\n").flush();
            assertEquals("exclusive", output.readLine());
            assertEquals("held", output.readLine());
            Result result = tool("import", "--list", "1", satellites.toString());
            assertEquals(1, result.exit());
            assertEquals("", result.out());
            assertEquals(
                    "tavro: cannot read the list database " + home.resolve("lists.db") + ": database is locked; another"
                            + " process has been writing to it for too long; end that process\n",
                    result.err());
        } finally {
            holder.outputWriter().close();
            holder.waitFor();
        }
        assertTrue(tool("list", "3", "--kind", "satellites").out().endsWith("2 satellites\n"));
    }

    @Test
    void aFileThatIsNotADatabaseIsReportedAndNotChanged() throws Exception {
        Path database = Files.writeString(home.resolve("lists.db"), "no database");
        for (String[] words : new String[][] {{"list", "1"}, {"show", "1,1"}, {"import", satellites.toString()}}) {
            Result result = tool(words);
            assertEquals(1, result.exit());
            assertEquals("", result.out());
            assertEquals("tavro: cannot read the list database " + database + ": file is not a database; move the file"
                    + " away to start without lists, or use another storage directory\n", result.err());
            assertEquals("no database", Files.readString(database));
        }
    }

    @Test
    void aDamagedDatabaseIsNotAnEmptyList() throws Exception {
        assertEquals(0, tool("import", "--list", "1", transponders.toString()).exit());
        Path database = home.resolve("lists.db");
        assertEquals(0, ToolProcess.run(
                List.of("sqlite3", database.toString(), "PRAGMA wal_checkpoint(TRUNCATE)"), folder,
                folder.resolve("out"), Map.of()));
        byte[] bytes = Files.readAllBytes(database);
        for (int i = 16384; i < bytes.length; i++) { // the first four pages describe the lists
            bytes[i] = (byte) 0x5A;
        }
        Files.write(database, bytes, StandardOpenOption.TRUNCATE_EXISTING);
        for (String[] words : new String[][] {
                {"list", "2", "--kind", "streams"}, {"show", "2,1", "--kind", "streams"},
                        {"import", transponders.toString()}}) {
            Result result = tool(words);
            assertEquals(1, result.exit(), words[0]);
            assertEquals("", result.out());
            assertEquals("tavro: cannot read the list database " + database + ": the file is damaged (database disk"
                    + " image is malformed); move the file away to start without lists, or use another storage"
                    + " directory\n", result.err());
        }
    }

    @Test
    void outputThatCannotBeWrittenFailsTheCommand() throws Exception {
        assertEquals(0, tool("import", "--list", "1", satellites.toString()).exit());
        Map<String, String> environment = Map.of("TAVRO_HOME", home.toString());
        List<String> command = ToolProcess.command(System.getProperty("java.library.path"), "list", "3", "--kind",
                "satellites");
        assertEquals(1, ToolProcess.run(command, folder, Path.of("/dev/full"), environment));
        assertEquals("tavro: cannot write the output: No space left on device\n",
                Files.readString(folder.resolve("err")));
    }

    @Test
    void contentsOfFilesDoNotControlTheTerminalAndLongLinesAreCut() throws Exception {
        Path file = Files.writeString(folder.resolve("evil\u001bname"),
                "S13E Uno\nS14E Due\nS15E Tre\nS1\u0000\u001b[2J\u009b" + "x".repeat(500) + " evil\n");
        Result result = tool("import", "--list", "1", file.toString());
        assertEquals(1, result.exit());
        assertEquals(
                "  malformed line " + folder.resolve("evil·name") + ":4: 'S1··[2J·" + "x".repeat(51)
                        + "…' is not an orbital position; write degrees from 0 to 180 as in S19.2E or S5W\n"
                        + "tavro: nothing was imported: 1 malformed line; correct the files, or import the rest with "
                        + "--partial\n",
                result.err());
    }
}
