package com.velotra.tv.tavro.tool.services;

import static com.velotra.tv.tavro.tool.input.ImportFixture.source;
import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.tool.input.Malformed;
import com.velotra.tv.tavro.tool.input.Place;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.input.Tally;
import com.velotra.tv.tavro.tool.transponders.Transponder;
import java.nio.charset.StandardCharsets;
import java.util.List;
import java.util.Map;
import java.util.stream.Stream;
import org.junit.jupiter.api.Test;

class ChannelsConfTest {
    private static final String PLAIN = "Uno:11493:HC23M5O35P0S1:S19.2E:22000:5101=27:5102:5104:0:10301:1:1019:0";

    private static ChannelsConf read(String... lines) {
        return ChannelsConf.read(source("channels.conf", lines));
    }

    private static Place line(int number) {
        return new Place("channels.conf", number);
    }

    private static List<Integer> numbers(ChannelsConf conf) {
        return conf.services().stream().map(Service::number).toList();
    }

    @Test
    void aLineIsAService() {
        ChannelsConf conf =
                read("Uno|1,U1;Provider:11493:HC23M5O35P0S1:S19.2E:22000:5101=27:5102:5104:1833,98c,5:10301:1:1019:0");
        assertEquals(List.of(), conf.malformed());
        assertEquals(
                List.of(new Service(
                        line(1), "Uno:1", "U1",
                        new Transponder(line(1), "", "S19.2E", Map.of(
                                "DELIVERY_SYSTEM", "DVBS2", "FREQUENCY", "11493000", "POLARIZATION", "HORIZONTAL",
                                "SYMBOL_RATE", "22000000",
                                "INNER_FEC", "2/3", "MODULATION", "PSK/8", "ROLLOFF", "35")),
                        true, List.of(0x1833, 0x98c), 10301, 1, 1019, 0)),
                conf.services());
    }

    @Test
    void theLastFieldIsOptionalAndTheSourceDecidesTheMedium() {
        ChannelsConf conf = read("Dos:490000:I0:T:27500:545:546:551:0:514:0:0",
                "Tres:410:M64:C:6900:0:102:104:0:28106:0:0:0",
                "Quattro:593:M10:A:0:0:102:104:0:3:0:0:0");
        assertEquals(List.of(), conf.malformed());
        assertEquals(
                List.of(
                        new Service(
                                line(1), "Dos", "",
                                new Transponder(line(1), "", "", Map.of(
                                        "DELIVERY_SYSTEM", "DVBT", "FREQUENCY", "490000000", "INVERSION", "OFF")),
                                true, List.of(), 514, 0, 0, 0),
                        new Service(
                                line(2), "Tres", "",
                                new Transponder(line(2), "", "", Map.of(
                                        "DELIVERY_SYSTEM", "DVBC/ANNEX_A", "FREQUENCY", "410000000", "MODULATION",
                                        "QAM/64",
                                        "SYMBOL_RATE", "6900000")),
                                false, List.of(), 28106, 0, 0, 0),
                        new Service(
                                line(3), "Quattro", "",
                                new Transponder(line(3), "", "", Map.of(
                                        "DELIVERY_SYSTEM", "ATSC", "FREQUENCY", "593000000", "MODULATION", "VSB/8")),
                                false, List.of(), 3, 0, 0, 0)),
                conf.services());
    }

    @Test
    void headingsGiveNumbersToTheServicesBehindThem() {
        ChannelsConf conf = read(PLAIN, ":First", PLAIN, ":@100", PLAIN, PLAIN, ":@500 Second", PLAIN, "",
                "# a comment");
        assertEquals(List.of(), conf.malformed());
        assertEquals(List.of(0, 0, 100, 101, 500), numbers(conf));
        assertEquals(3, conf.groups());
    }

    @Test
    void numbersOnlyGrow() {
        ChannelsConf conf = read(":@100", PLAIN, ":@50", PLAIN, ":@102", PLAIN, ":@16383", PLAIN, PLAIN);
        assertEquals(List.of(100, 101, 102, 16383, 0), numbers(conf));
        assertEquals(List.of(new Malformed(line(3), "channel number '50' is not a number from 101 to 16383")),
                conf.malformed());
        assertEquals(3, conf.groups());
    }

    @Test
    void aShortNameStandsBehindTheLastComma() {
        Service service = read(PLAIN.replace("Uno", "Uno, due, tre,U2;Provider, Inc.")).services().get(0);
        assertEquals(List.of("Uno, due, tre", "U2"), List.of(service.name(), service.shortName()));
    }

    @Test
    void aLocalDeviceNumberIsNoConditionalAccess() {
        ChannelsConf conf = read(PLAIN.replace(":0:10301", ":1,ff:10301"), PLAIN.replace(":0:10301", ":100:10301"));
        assertEquals(List.of(List.of(), List.of(0x100)), conf.services().stream().map(Service::caIds).toList());
        assertEquals(List.of(false, true), conf.services().stream().map(Service::scrambled).toList());
    }

    @Test
    void servicesWithEqualTuningHaveEqualTransponders() {
        List<Map<String, String>> values = read(PLAIN, PLAIN.replace("Uno", "Due"), PLAIN.replace("11493", "11494"))
                .services().stream()
                .map(service -> service.transponder().values()).toList();
        assertEquals(List.of(true, false),
                List.of(values.get(0).equals(values.get(1)), values.get(0).equals(values.get(2))));
    }

    @Test
    void aLineThatIsNotUtf8IsReadAsLatin1() {
        String line = PLAIN.replace("Uno", "Köln");
        assertEquals("Köln", ChannelsConf.read(new Source("x", "x", line.getBytes(StandardCharsets.ISO_8859_1)))
                .services().get(0).name());
        assertEquals("Köln", read(line).services().get(0).name());
    }

    @Test
    void malformedLinesAreReportedAndTheRestIsRead() {
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
                PLAIN + ":1",
                PLAIN.replace("S19.2E", "S190E"),
                PLAIN.replace("HC23", "H?\u001b"),
                PLAIN.replace(":1:1019", ":65536:1019"),
                PLAIN.replace(":1019:0", ":x:0"),
                PLAIN.replace("S19.2E", ""));
        assertEquals(List.of(line(2)), conf.services().stream().map(Service::place).toList());
        assertEquals(
                List.of(
                        new Malformed(line(1), "1 fields instead of 13 (separated by colons)"),
                        new Malformed(line(3), "the service has no name"),
                        new Malformed(line(4), "frequency 'x' is not a number from 1 to 2147483647"),
                        new Malformed(line(5), "source 'Q' is not C, T, A or a position as in S19.2E"),
                        new Malformed(line(6), "symbol rate '-1' is not a number from 0 to 2147483647"),
                        new Malformed(line(7), "video PID '9999' is not a number from 0 to 8191"),
                        new Malformed(line(8), "CA id 'xyz' is not a number from 0 to 65535"),
                        new Malformed(line(9), "service id '70000' is not a number from 0 to 65535"),
                        new Malformed(line(10), "channel number '0' is not a number from 1 to 16383"),
                        new Malformed(line(11), "14 fields instead of 13 (separated by colons)"),
                        new Malformed(line(12), "source 'S190E' is not C, T, A or a position as in S19.2E"),
                        new Malformed(line(13), "tuning parameters 'H?·M5O35P0S1' are not letters with numbers"),
                        new Malformed(line(14), "network id '65536' is not a number from 0 to 65535"),
                        new Malformed(line(15), "transport stream id 'x' is not a number from 0 to 65535"),
                        new Malformed(line(16), "source '' is not C, T, A or a position as in S19.2E")),
                conf.malformed());
    }

    @Test
    void writtenNamesThatLoseSomethingAreCountedOnce() throws Exception {
        Transponder transponder = new Transponder(line(1), "", "S19.2E", Map.of("DELIVERY_SYSTEM", "DVBS",
                "FREQUENCY", "11493000", "POLARIZATION", "HORIZONTAL", "SYMBOL_RATE", "22000000"));
        Tally lost = new Tally("");
        StringBuilder out = new StringBuilder();
        ChannelsConfWriter.write(Stream.of("Uno", "", " ", "a\uFFFDb")
                .map(name -> new Service(line(1), name, name.isEmpty() ? "" : "a,;b", transponder, false, List.of(), 1,
                        1, 1, 0)).toList(), out, lost);
        assertEquals(Map.of("name", 3, "short_name", 3), lost.counts());
        assertEquals(List.of("Uno,a  b", "-", "-,a  b", "a\uFFFDb,a  b"),
                out.toString().lines().map(line -> line.split(":")[0]).toList());
    }
}
