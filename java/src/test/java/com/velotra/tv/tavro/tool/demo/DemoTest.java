package com.velotra.tv.tavro.tool.demo;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.velotra.tv.tavro.tool.ToolProcess;
import com.velotra.tv.tavro.tool.ToolProcess.Result;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

/** The demo with service lists of one to four services. */
class DemoTest {
    @TempDir
    Path folder;

    private Path sources;
    private Path dishes;
    private Path work;

    @BeforeEach
    void writeSources() throws IOException {
        sources = Files.createDirectory(folder.resolve("sources"));
        dishes = Files.createDirectory(folder.resolve("dishes"));
        work = Files.createDirectory(folder.resolve("work"));
        Files.write(dishes.resolve("sources.conf"), List.of("S13E Quattro", "S19.2E  Cinque Sei", "C Cable"));
        Files.write(dishes.resolve("diseqc.conf"), List.of("S19.2E 99999 H 10600 t V"));
        Files.write(sources.resolve("channels.conf.sat"), List.of(
                "Uno,U1;Provider:11493:H:S19.2E:22000:101=27:102:0:0:1:1:1019:0",
                ":@100 Pay",
                "Due:11493:H:S19.2E:22000:201=27:202:0:98c:2:1:1019:0",
                "Tre:11494:V:S19.2E:22000:0:302:0:0:3:1:1020:0",
                "Vier und " + "v".repeat(80) + ":11494:V:S19.2E:22000:0:402:0:0:4:1:1020:0"));
        Files.write(sources.resolve("channels.conf.cable"), List.of(
                "Köln:410:M64:C:6900:101:102:0:0:5:0:0:0", "Bonn:418:M64:C:6900:201:202:0:0:6:0:0:0"));
        Files.write(sources.resolve("channels.conf.terr"), List.of("Sieben:490000:I0:T:27500:545:546:0:0:7:0:0"));
    }

    private Result demo(Path home) throws IOException, InterruptedException {
        return ToolProcess.run(folder, Map.of("TAVRO_HOME", home.toString()), "demo", sources.toString(),
                dishes.toString(), work.toString());
    }

    @Test
    void everyStepIsCheckedAndTheListsStay() throws Exception {
        Path home = work.resolve("home");
        Result demo = demo(home);
        assertEquals(0, demo.exit(), demo.out() + demo.err());
        assertEquals(8, demo.out().lines().filter(line -> line.matches("\\d\\. .*")).count(), demo.out());
        assertEquals(31, demo.out().lines().filter(line -> line.startsWith("   ok   ")).count(), demo.out());
        assertTrue(demo.out().contains("\nAll 31 checks passed.\n"), demo.out());
        assertEquals("", demo.err());

        Result list = ToolProcess.run(folder, Map.of("TAVRO_HOME", home.toString()), "list", "5");
        assertTrue(list.out().contains("My favorite"), list.out());
        assertTrue(list.out().endsWith("4 services\n"), list.out());
    }

    @Test
    void theCommandPrintedAtTheEndCanBePasted() throws Exception {
        Path home = work.resolve("it's my home");
        String end = "\nLook around: TAVRO_HOME='" + home.toString().replace("'", "'\\''") + "' ./tavro list 1\n";
        Result demo = demo(home);
        assertTrue(demo.out().endsWith(end), demo.out());
        Path printed = folder.resolve("printed");
        assertEquals(0, ToolProcess.run(
                List.of("sh", "-c", end.replaceAll("\\s*Look around: (TAVRO_HOME=.*) ./tavro list 1\n",
                        "$1; printf %s \"\\$TAVRO_HOME\"")),
                folder, printed, Map.of()));
        assertEquals(home.toString(), Files.readString(printed));
    }

    @Test
    void aLineThatIsNotAServiceFailsTheDemo() throws Exception {
        Files.write(sources.resolve("channels.conf.terr"),
                List.of("Sieben:490000:I0:T:27500:545:546:0:0:7:0:0", "Acht:490000"));
        Result demo = demo(work.resolve("home"));
        assertEquals(1, demo.exit());
        assertEquals(
                "  malformed line " + sources.resolve("channels.conf.terr")
                        + ":2: 2 fields instead of 13 (separated by colons)\n", demo.err());
        assertTrue(demo.out().contains("\n   FAIL every service of the file was imported: 2\n"), demo.out());
        assertTrue(demo.out().endsWith("\n1 of 31 checks FAILED.\n"), demo.out());
    }

    @Test
    void oneServiceIsTracedThroughAllFourLists() throws Exception {
        Result demo = demo(work.resolve("home"));
        int start = demo.out().indexOf("   service 1,1");
        assertEquals(
                """
                   service 1,1        'Uno', service id 1
                   stream 1,1         11493000 kHz, transport stream id 1019, network id 1
                   network 1,1        'Network 1', network id 1
                   satellite 1,2      'Cinque Sei' at S19.2E, LNB 10600 MHz, DiSEqC -
                   ok   the service's transport stream exists, and the service is among its services
                   ok   service and transport stream refer to the same network, whose record has the stream's network id
                   ok   service and transport stream refer to the same satellite
                   ok   the transport stream is among those of the satellite
                   ok   all 2 transport streams are found through the 1 satellite records that they refer to
                """,
                demo.out().substring(start, demo.out().indexOf("\n\n", start) + 1));
    }

    @Test
    void aMissingSatelliteIsReportedAndFailsTheTrace() throws Exception {
        Files.write(dishes.resolve("sources.conf"), List.of("S13E Quattro"));
        Result demo = demo(work.resolve("home"));
        assertEquals(1, demo.exit());
        assertEquals(
                "  not imported S19.2E: dish settings for a position without a satellite (import sources.conf too)\n",
                demo.err());
        assertTrue(demo.out().contains("       2  no satellite at S19.2E in satellite list 1\n"), demo.out());
        assertTrue(demo.out().contains("\n   FAIL service and transport stream refer to the same satellite\n"),
                demo.out());
        assertTrue(demo.out().endsWith("\n3 of 31 checks FAILED.\n"), demo.out());
    }

    @Test
    void aMissingSourceIsNamed() throws Exception {
        Files.delete(sources.resolve("channels.conf.cable"));
        Result demo = demo(work.resolve("home"));
        assertEquals(
                new Result(1, "", "tavro: cannot read " + sources.resolve("channels.conf.cable")
                        + ": no such file or folder\n"), demo);
    }

    @Test
    void aStorageDirectoryElsewhereIsLeftAlone() throws Exception {
        Path home = folder.resolve("mine");
        assertEquals(new Result(1, "", refusal(home, "is not below " + work)), demo(home));
        assertFalse(Files.exists(home));
        assertEquals(new Result(1, "", refusal(work, "is not below " + work)), demo(work));
    }

    @Test
    void aStorageDirectoryInUseIsLeftAlone() throws Exception {
        Path home = Files.createDirectory(work.resolve("home"));
        Path properties = Files.writeString(home.resolve("properties"), "name=value");
        assertEquals(new Result(1, "", refusal(home, "is not an empty directory")), demo(home));
        assertEquals(List.of(properties), List.of(home.resolve(home.toFile().list()[0])));
        assertEquals(1, home.toFile().list().length);
        assertEquals(new Result(1, "", refusal(properties, "is not an empty directory")), demo(properties));
    }

    private String refusal(Path home, String reason) {
        return "tavro: refusing to run the demo: storage directory " + home + " " + reason
                + "; run ./tavro demo, or set TAVRO_HOME to a new directory below " + work + "\n";
    }
}
