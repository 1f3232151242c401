package com.velotra.tv.tavro.tool.services;

import static com.velotra.tv.tavro.tool.input.ImportFixture.source;
import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.tool.input.Malformed;
import com.velotra.tv.tavro.tool.input.Place;
import com.velotra.tv.tavro.tool.input.Tally;
import com.velotra.tv.tavro.tool.transponders.DvbV5File;
import com.velotra.tv.tavro.tool.transponders.Transponder;
import java.util.List;
import java.util.Map;
import java.util.stream.Stream;
import org.junit.jupiter.api.Test;

class DvbV5ServicesTest {
    private static DvbV5Services read(String fileName, String... lines) {
        return DvbV5Services.of(DvbV5File.read(source(fileName, lines)));
    }

    @Test
    void aNamedBlockWithAServiceIdIsAServiceOnItsTransponder() {
        Place place = new Place("channels", 1);
        DvbV5Services services = read(
                "channels", "[Uno]", "SERVICE_ID = 7", "NETWORK_ID = 8468", "TRANSPORT_ID = 1019", "VCHANNEL = 12",
                "VIDEO_PID = 101",
                "AUDIO_PID = 102 103", "PID_06 = 104", "FREQUENCY = 474000000", "MODULATION = QAM/64",
                "DELIVERY_SYSTEM = DVBT");
        assertEquals(List.of(), services.malformed());
        assertEquals(
                List.of(new Service(
                        place, "Uno", "",
                        new Transponder(place, "", "", Map.of(
                                "FREQUENCY", "474000000", "MODULATION", "QAM/64", "DELIVERY_SYSTEM", "DVBT")),
                        true, List.of(), 7, 8468, 1019, 12)),
                services.services());
    }

    @Test
    void withoutAVideoPidAServiceIsRadioAndMissingIdsAreUnknown() {
        Place first = new Place("Uno-19.2E", 1);
        Place second = new Place("Uno-19.2E", 3);
        assertEquals(
                List.of(
                        new Service(first, "Uno", "", new Transponder(first, "", "S19.2E", Map.of()), false, List.of(),
                                1, 0, 0, 0),
                        new Service(second, "Due", "", new Transponder(second, "", "S19.2E", Map.of()), false,
                                List.of(), 65535, 0, 0, 0)),
                read("Uno-19.2E", "[Uno]", "SERVICE_ID = 1", "[Due]", "SERVICE_ID = 65535", "VIDEO_PID = 0")
                        .services());
    }

    @Test
    void aChannelNumberIsTakenWhenItIsOneNumber() {
        assertEquals(
                List.of(9999, 0, 0, 0, 0),
                read("x", "[A]", "SERVICE_ID = 1", "VCHANNEL = 9999", "[B]", "SERVICE_ID = 2", "VCHANNEL = 5.1", "[C]",
                        "SERVICE_ID = 3",
                        "VCHANNEL = 0", "[D]", "SERVICE_ID = 4", "VCHANNEL = none", "[E]",
                        "SERVICE_ID = 5").services().stream()
                        .map(Service::number).toList());
    }

    @Test
    void aChannelNumberOutOfRangeIsReported() {
        assertEquals(
                List.of(Map.of("VCHANNEL", "16384"), Map.of("VCHANNEL", "5.1"), Map.of()),
                read("x", "[A]", "SERVICE_ID = 1", "VCHANNEL = 16384", "[B]", "SERVICE_ID = 2", "VCHANNEL = 5.1", "[C]",
                        "SERVICE_ID = 3",
                        "VCHANNEL = 16383").services().stream().map(service -> service.transponder().values())
                                .toList());
    }

    @Test
    void otherBlocksAreNotServices() {
        DvbV5Services services = read("x", "[CHANNEL]", "SERVICE_ID = 7", "[C21]", "FREQUENCY = 474000000");
        assertEquals(List.of(), services.services());
        assertEquals(List.of(), services.malformed());
    }

    @Test
    void aServiceWithMalformedIdsIsReportedAndTheRestIsRead() {
        DvbV5Services services = read(
                "x", "[A]", "SERVICE_ID = 65536", "[B]", "SERVICE_ID = 1", "NETWORK_ID = x\u001b", "[C]",
                "SERVICE_ID = 1", "TRANSPORT_ID = -1",
                "[D]", "SERVICE_ID = 4");
        assertEquals(
                List.of(
                        new Malformed(new Place("x", 1), "SERVICE_ID '65536' is not a number from 0 to 65535"),
                        new Malformed(new Place("x", 3), "NETWORK_ID 'x·' is not a number from 0 to 65535"),
                        new Malformed(new Place("x", 6), "TRANSPORT_ID '-1' is not a number from 0 to 65535")),
                services.malformed());
        assertEquals(List.of("D"), services.services().stream().map(Service::name).toList());
    }

    @Test
    void writtenNamesThatLoseSomethingAreCountedOnce() throws Exception {
        Place place = new Place("x", 1);
        Transponder transponder = new Transponder(place, "", "", Map.of("DELIVERY_SYSTEM", "DVBT"));
        Tally lost = new Tally("");
        StringBuilder out = new StringBuilder();
        DvbV5Writer.writeServices(Stream.of("Uno", "", " ", "a\uFFFDb").map(name ->
                new Service(place, name, "", transponder, false, List.of(), 1, 1, 1, 0)).toList(), out, lost);
        assertEquals(Map.of("name", 3), lost.counts());
        assertEquals(List.of("[Uno]", "[-]", "[-]", "[a\uFFFDb]"),
                out.toString().lines().filter(line -> line.startsWith("[")).toList());
    }
}
