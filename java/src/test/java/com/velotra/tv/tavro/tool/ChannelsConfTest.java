package com.velotra.tv.tavro.tool;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNotEquals;

import java.io.IOException;
import java.nio.charset.Charset;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

class ChannelsConfTest {
    private static final String PLAIN = "Uno:11493:HC23M5O35P0S1:S19.2E:22000:5101=27:5102:5104:0:10301:1:1019:0";

    @TempDir
    Path folder;

    private ChannelsConf read(Charset charset, String... lines) throws IOException {
        Path file = folder.resolve("channels.conf");
        Files.writeString(file, String.join("\n", lines) + "\n", charset);
        return ChannelsConf.read(file);
    }

    private ChannelsConf read(String... lines) throws IOException {
        return read(StandardCharsets.UTF_8, lines);
    }

    @Test
    void aLineIsAService() throws IOException {
        ChannelsConf conf =
                read("Uno|1,U1;Provider:11493:HC23M5O35P0S1:S19.2E:22000:5101=27:5102:5104:1833,98c,5:10301:1:1019:0");
        assertEquals(
                List.of(new ChannelsConf.Service(
                        "Uno:1", "U1", "Provider", 11493, "HC23M5O35P0S1", ChannelsConf.Medium.SATELLITE, "S19.2E",
                        22000, 5101, List.of(0x1833, 0x98c), 10301, 1, 1019, 0)),
                conf.services);
        assertEquals(List.of(), conf.malformed);
    }

    @Test
    void theLastFieldMayBeMissingAndMediaAreToldByTheSource() throws IOException {
        ChannelsConf conf = read("Dos:490000:I0:T:27500:545:546:551:0:514:0:0", "Tres:410:M64:C:6900:0:102:104:0:28106:0:0:0");
        assertEquals(
                List.of(ChannelsConf.Medium.TERRESTRIAL, ChannelsConf.Medium.CABLE),
                conf.services.stream().map(ChannelsConf.Service::medium).toList());
        assertEquals(0, conf.services.get(1).videoPid());
    }

    @Test
    void headingsGiveNumbersToTheServicesBehindThem() throws IOException {
        ChannelsConf conf = read(PLAIN, ":First", PLAIN, ":@100", PLAIN, PLAIN, ":@500 Second", PLAIN, "", "# a comment");
        assertEquals(List.of(0, 0, 100, 101, 500), conf.services.stream().map(ChannelsConf.Service::number).toList());
        assertEquals(3, conf.groups);
        assertEquals(2, conf.ignored);
    }

    @Test
    void numbersOnlyGrow() throws IOException {
        ChannelsConf conf = read(":@100", PLAIN, ":@50", PLAIN, ":@102", PLAIN, ":@16383", PLAIN, PLAIN);
        assertEquals(
                List.of(100, 101, 102, 16383, 0), conf.services.stream().map(ChannelsConf.Service::number).toList());
        assertEquals(
                List.of(folder.resolve("channels.conf") + ":3: channel number '50' is not a number from 101 to 16383"),
                conf.malformed.stream().map(Object::toString).toList());
    }

    @Test
    void aShortNameStandsBehindTheLastComma() throws IOException {
        ChannelsConf conf = read(PLAIN.replace("Uno", "Uno, due, tre,U2;Provider, Inc."));
        assertEquals("Uno, due, tre", conf.services.get(0).name());
        assertEquals("U2", conf.services.get(0).shortName());
        assertEquals("Provider, Inc.", conf.services.get(0).provider());
    }

    @Test
    void aLocalDeviceNumberIsNoConditionalAccess() throws IOException {
        ChannelsConf conf = read(PLAIN.replace(":0:10301", ":1,ff:10301"), PLAIN.replace(":0:10301", ":100:10301"));
        assertEquals(List.of(List.of(), List.of(0x100)), conf.services.stream().map(ChannelsConf.Service::caIds).toList());
    }

    @Test
    void servicesThatAgreeInTheirTuningShareATransponder() throws IOException {
        ChannelsConf conf = read(PLAIN, PLAIN.replace("Uno", "Due"), PLAIN.replace("11493", "11494"));
        assertEquals(conf.services.get(0).transponder(), conf.services.get(1).transponder());
        assertNotEquals(conf.services.get(0).transponder(), conf.services.get(2).transponder());
    }

    @Test
    void aLineThatIsNotUtf8IsReadAsLatin1() throws IOException {
        assertEquals("Köln", read(StandardCharsets.ISO_8859_1, PLAIN.replace("Uno", "Köln")).services.get(0).name());
        assertEquals("Köln", read(PLAIN.replace("Uno", "Köln")).services.get(0).name());
    }

    @Test
    void malformedLinesAreToldWithFileLineAndReasonAndTheRestIsRead() throws IOException {
        ChannelsConf conf = read(
                "no service",
                PLAIN,
                PLAIN.replace("Uno", " "),
                PLAIN.replace("11493", "x"),
                PLAIN.replace("S19.2E", "Q"),
                PLAIN.replace("22000", "-1"),
                PLAIN.replace("5101=27", "9999"),
                PLAIN.replace(":0:10301", ":xyz:10301"),
                PLAIN.replace("10301", "70000"),
                ":@0 heading",
                PLAIN + ":1");
        String file = folder.resolve("channels.conf").toString();
        assertEquals(1, conf.services.size());
        assertEquals(
                List.of(
                        file + ":1: 1 fields instead of 13 with colons between them",
                        file + ":3: the service has no name",
                        file + ":4: frequency 'x' is not a number from 1 to 2147483647",
                        file + ":5: source 'Q' is not C, T or a position as in S19.2E",
                        file + ":6: symbol rate '-1' is not a number from 0 to 2147483647",
                        file + ":7: video PID '9999' is not a number from 0 to 8191",
                        file + ":8: CA id 'xyz' is not a number from 0 to 65535",
                        file + ":9: service id '70000' is not a number from 0 to 65535",
                        file + ":10: channel number '0' is not a number from 1 to 16383",
                        file + ":11: 14 fields instead of 13 with colons between them"),
                conf.malformed.stream().map(Object::toString).toList());
    }
}
