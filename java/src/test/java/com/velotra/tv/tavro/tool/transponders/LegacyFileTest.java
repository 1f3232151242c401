package com.velotra.tv.tavro.tool.transponders;

import static com.velotra.tv.tavro.tool.input.ImportFixture.source;
import static org.junit.jupiter.api.Assertions.assertEquals;

import com.velotra.tv.tavro.tool.input.Malformed;
import com.velotra.tv.tavro.tool.input.Place;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.Test;

class LegacyFileTest {
    /** The values of the only transponder in one line. */
    private static Map<String, String> values(String line) {
        LegacyFile file = LegacyFile.read(source("table", line));
        assertEquals(List.of(), file.malformed(), line);
        assertEquals(1, file.transponders().size(), line);
        return file.transponders().get(0).values();
    }

    private static String value(String line, String key) {
        return values(line).getOrDefault(key, "");
    }

    @Test
    void aTerrestrialLineHasAllItsValues() {
        assertEquals(
                Map.of("DELIVERY_SYSTEM", "DVBT", "FREQUENCY", "658166000", "BANDWIDTH_HZ", "8000000", "CODE_RATE_HP",
                        "3/4",
                        "CODE_RATE_LP", "NONE", "MODULATION", "QAM/64", "TRANSMISSION_MODE", "8K", "GUARD_INTERVAL",
                        "1/8",
                        "HIERARCHY", "NONE"),
                values("T 658166000 8MHz 3/4 NONE QAM64 8k 1/8 NONE"));
    }

    @Test
    void aSecondGenerationTerrestrialLineEndsWithItsPlp() {
        assertEquals(
                Map.of("DELIVERY_SYSTEM", "DVBT2", "FREQUENCY", "746000000", "BANDWIDTH_HZ", "8000000", "CODE_RATE_HP",
                        "2/3",
                        "CODE_RATE_LP", "NONE", "MODULATION", "QAM/256", "TRANSMISSION_MODE", "32K", "GUARD_INTERVAL",
                        "1/128",
                        "HIERARCHY", "NONE", "STREAM_ID", "1"),
                values("T2 746000000 8MHz 2/3 NONE QAM256 32k 1/128 NONE 1"));
    }

    @Test
    void aSatelliteLineHasAllItsValues() {
        assertEquals(
                Map.of("DELIVERY_SYSTEM", "DVBS", "FREQUENCY", "3820000", "POLARIZATION", "HORIZONTAL", "SYMBOL_RATE",
                        "29268000",
                        "INNER_FEC", "3/4"),
                values("S 3820000 H 29268000 3/4"));
    }

    @Test
    void aDvbS2LineEndsWithRollOffModulationAndStreamId() {
        Map<String, String> values = Map.of(
                "FREQUENCY", "10730000", "POLARIZATION", "VERTICAL", "SYMBOL_RATE", "27500000", "INNER_FEC", "9/10",
                "ROLLOFF", "20",
                "MODULATION", "PSK/8", "STREAM_ID", "4");
        Map<String, String> second = new HashMap<>(values);
        second.put("DELIVERY_SYSTEM", "DVBS2");
        assertEquals(second, values("S2 10730000 V 27500000 9/10 20 8PSK 4"));
        Map<String, String> first = new HashMap<>(values);
        first.put("DELIVERY_SYSTEM", "DVBS");
        assertEquals(first, values("S1 10730000 V 27500000 9/10 20 8PSK 4"));
    }

    @Test
    void aCableLineHasAllItsValues() {
        assertEquals(
                Map.of("DELIVERY_SYSTEM", "DVBC/ANNEX_A", "FREQUENCY", "121000000", "SYMBOL_RATE", "6900000",
                        "INNER_FEC", "NONE",
                        "MODULATION", "QAM/256"),
                values("C 121000000 6900000 NONE QAM256"));
    }

    @Test
    void aNorthAmericanLineIsCableWhenItsModulationIs() {
        assertEquals(
                Map.of("DELIVERY_SYSTEM", "ATSC", "FREQUENCY", "593000000", "MODULATION", "VSB/8"),
                values("A 593000000 8VSB"));
        assertEquals(
                Map.of("DELIVERY_SYSTEM", "DVBC/ANNEX_B", "FREQUENCY", "69000000", "MODULATION", "QAM/256"),
                values("A 69000000 QAM256"));
    }

    @Test
    void valuesAtTheEndMayBeMissing() {
        assertEquals(Map.of("DELIVERY_SYSTEM", "DVBT", "FREQUENCY", "474000000"), values("T 474000000"));
        assertEquals(
                Map.of("DELIVERY_SYSTEM", "DVBT2", "FREQUENCY", "474000000", "BANDWIDTH_HZ", "8000000"),
                values("T2 474000000 8MHz"));
        assertEquals(
                Map.of("DELIVERY_SYSTEM", "DVBS", "FREQUENCY", "3820000", "POLARIZATION", "RIGHT"),
                values("S 3820000 R"));
        assertEquals(Map.of("DELIVERY_SYSTEM", "DVBS", "FREQUENCY", "3820000"), values("S1 3820000"));
        assertEquals(
                Map.of("DELIVERY_SYSTEM", "DVBS2", "FREQUENCY", "3820000", "POLARIZATION", "LEFT", "SYMBOL_RATE",
                        "29268000",
                        "INNER_FEC", "AUTO"),
                values("S2 3820000 L 29268000 AUTO"));
        assertEquals(Map.of("DELIVERY_SYSTEM", "DVBC/ANNEX_A", "FREQUENCY", "121000000"), values("C 121000000"));
        assertEquals(Map.of("DELIVERY_SYSTEM", "ATSC", "FREQUENCY", "593000000"), values("A 593000000"));
    }

    @Test
    void modulationsAreWrittenNumberFirstOrLast() {
        assertEquals("PSK/8", value("S2 1000 H 1 AUTO AUTO 8PSK", "MODULATION"));
        assertEquals("APSK/16", value("S2 1000 H 1 AUTO AUTO 16APSK", "MODULATION"));
        assertEquals("APSK/32", value("S2 1000 H 1 AUTO AUTO APSK32", "MODULATION"));
        assertEquals("QAM/16", value("C 1000 1 AUTO 16QAM", "MODULATION"));
        assertEquals("VSB/16", value("A 1000 16VSB", "MODULATION"));
        for (String same : List.of("QPSK", "DQPSK", "AUTO", "QAM", "8FSK")) {
            assertEquals(same, value("S2 1000 H 1 AUTO AUTO " + same, "MODULATION"));
        }
    }

    @Test
    void bandwidthsAreWrittenInMegahertz() {
        assertEquals("6000000", value("T 1000 6MHz", "BANDWIDTH_HZ"));
        assertEquals("10000000", value("T2 1000 10MHz", "BANDWIDTH_HZ"));
        assertEquals("1712000", value("T2 1000 1.712MHz", "BANDWIDTH_HZ"));
        assertEquals("1700000", value("T2 1000 1.7MHz", "BANDWIDTH_HZ"));
        for (String same : List.of("AUTO", "8", "8000000", "100MHz", "MHz", "1.7125MHz")) {
            assertEquals(same, value("T 1000 " + same, "BANDWIDTH_HZ"));
        }
    }

    @Test
    void aValueWithoutADvbV5NameStaysAsItIs() {
        assertEquals(
                Map.of("DELIVERY_SYSTEM", "DVBS", "FREQUENCY", "1000", "POLARIZATION", "X", "SYMBOL_RATE", "many",
                        "INNER_FEC", "9/8"),
                values("S 1000 X many 9/8"));
    }

    @Test
    void transpondersHaveTheirLineAndThePositionOfTheFileName() {
        LegacyFile file = LegacyFile.read(
                source("Uno-5.0W", "# comment", "", "S 1000 H # comment", "\tS\t 2000\tV  ", "#S 3000 H"));
        assertEquals(List.of(), file.malformed());
        assertEquals(
                List.of(
                        new Transponder(new Place("Uno-5.0W", 3), "", "S5.0W",
                                Map.of("DELIVERY_SYSTEM", "DVBS", "FREQUENCY", "1000", "POLARIZATION", "HORIZONTAL")),
                        new Transponder(new Place("Uno-5.0W", 4), "", "S5.0W",
                                Map.of("DELIVERY_SYSTEM", "DVBS", "FREQUENCY", "2000", "POLARIZATION", "VERTICAL"))),
                file.transponders());
    }

    @Test
    void malformedLinesAreReportedAndTheRestIsRead() {
        LegacyFile file = LegacyFile.read(source(
                "table", "X 474000000", "T", "T x", "S -1", "S 1234567890123456789", "C 1000 1 2 3 4",
                "T 1 2 3 4 5 6 7 8 9",
                "T2 1 2 3 4 5 6 7 8 9 10", "S 1 2 3 4 5", "S2 1 2 3 4 5 6 7 8", "A 1 2 3", "t 474000000", "\u001b[2J",
                "A 1000"));
        assertEquals(
                List.of(
                        malformed(1, "delivery system 'X' is not T, T2, C, S, S1, S2 or A"),
                        malformed(2, "'T' has no frequency after its delivery system"),
                        malformed(3, "'T x' has no frequency after its delivery system"),
                        malformed(4, "'S -1' has no frequency after its delivery system"),
                        malformed(5, "'S 1234567890123456789' has no frequency after its delivery system"),
                        malformed(6, "'C 1000 1 2 3 4' has 5 values; C takes at most 4"),
                        malformed(7, "'T 1 2 3 4 5 6 7 8 9' has 9 values; T takes at most 8"),
                        malformed(8, "'T2 1 2 3 4 5 6 7 8 9 10' has 10 values; T2 takes at most 9"),
                        malformed(9, "'S 1 2 3 4 5' has 5 values; S takes at most 4"),
                        malformed(10, "'S2 1 2 3 4 5 6 7 8' has 8 values; S2 takes at most 7"),
                        malformed(11, "'A 1 2 3' has 3 values; A takes at most 2"),
                        malformed(12, "delivery system 't' is not T, T2, C, S, S1, S2 or A"),
                        malformed(13, "delivery system '·[2J' is not T, T2, C, S, S1, S2 or A")),
                file.malformed());
        assertEquals(
                List.of(new Transponder(new Place("table", 14), "", "",
                        Map.of("DELIVERY_SYSTEM", "ATSC", "FREQUENCY", "1000"))),
                file.transponders());
    }

    private static Malformed malformed(int line, String reason) {
        return new Malformed(new Place("table", line), reason);
    }
}
