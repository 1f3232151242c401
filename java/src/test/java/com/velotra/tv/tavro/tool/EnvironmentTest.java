package com.velotra.tv.tavro.tool;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.tool.ToolProcess.Result;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** Library path, storage directory and settings. Each command runs in a new virtual machine. */
class EnvironmentTest {
    @TempDir
    Path folder;

    private Result run(Path home, String... arguments) throws IOException, InterruptedException {
        return ToolProcess.run(folder, Map.of("TAVRO_HOME", home.toString()), arguments);
    }

    @Test
    void aMissingLibraryIsReportedWithTheRemedy() throws Exception {
        Map<String, String> environment = Map.of("TAVRO_HOME", folder.toString());
        Result list = ToolProcess.runWithLibraryPath(folder.toString(), folder, environment, "list", "2");
        assertEquals(1, list.exit());
        assertTrue(list.err().startsWith("tavro: cannot load libtavro_tool.so from java.library.path "
                + folder + "; build it with ./tavro build, and start Java with -Djava.library.path="), list.err());
        assertEquals(1, list.err().lines().count());
    }

    @Test
    void anUnknownListIsReportedWithTheListsThatThereAre() throws Exception {
        Path home = folder.resolve("home");
        String terrestrial = "T 505833330 8MHz 2/3 NONE QAM64 8k 1/8 NONE\n";
        String one = Files.writeString(folder.resolve("one"), terrestrial).toString();
        String three = Files.writeString(folder.resolve("three"),
                terrestrial + "C 113000000 6900000 NONE QAM64\nS 12187000 H 27500000 3/4\n").toString();
        run(home, "import", "--list", "4", one);
        String unknown = "tavro: no transport stream list 9 in " + home + "; it has transport stream list";
        assertEquals(unknown + " 4\n", run(home, "list", "9", "-k", "streams").err());
        for (String list : List.of("1", "11", "14", "17")) {
            run(home, "import", "--list", list, three);
        }
        assertEquals(unknown + "s 1, 2, 3, 4, 11, 12, 13, 14, 15, 16, …\n",
                run(home, "list", "9", "-k", "streams").err());
        assertEquals("tavro: no network list 9 in " + home + "; it has none; ./tavro import makes some\n",
                run(home, "list", "9", "-k", "networks").err());
    }

    @Test
    void aStorageDirectoryThatCannotBeReadIsReportedWithTheReason() throws Exception {
        Path missing = folder.resolve("missing");
        String remedy = "; set TAVRO_HOME to the one that holds your lists\n";
        assertEquals(
                new Result(1, "", "tavro: cannot read the storage directory " + missing + ": no such directory"
                        + remedy),
                run(missing, "list", "1"));
        assertFalse(Files.exists(missing));
        Path file = Files.writeString(folder.resolve("file"), "text");
        assertEquals(
                new Result(1, "", "tavro: cannot read the storage directory " + file + ": it is not a directory"
                        + remedy),
                run(file, "show", "1,1"));
    }

    @Test
    void anInvalidSettingIsReportedOnce() throws Exception {
        Path satellites = Files.writeString(folder.resolve("satellites"), "S13E Uno\n");
        Map<String, String> settings = Map.of(
                "TAVRO_LOG_FILE", "/nonexistent/log", "TAVRO_LOCK_TIMEOUT_MS", "abc", "TAVRO_PROPERTIES",
                "/nonexistent/properties");
        for (Map.Entry<String, String> setting : settings.entrySet()) {
            Result result = ToolProcess.run(
                    folder, Map.of("TAVRO_HOME", folder.toString(), setting.getKey(), setting.getValue()), "import",
                    satellites.toString());
            assertEquals(0, result.exit());
            assertEquals(1, result.err().lines().count(), result.err());
            assertTrue(result.err().startsWith("E/TavroHost(") && result.err().contains(setting.getValue()),
                    result.err());
        }
    }
}
