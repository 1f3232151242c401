package com.velotra.tv.tavro.tool.services;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import java.util.HashMap;
import java.util.List;
import java.util.Map;
import org.junit.jupiter.api.Test;

class VdrTuningTest {
    /** What parameters add to the frequency and the delivery system. */
    private static Map<String, String> parameters(char source, String parameters) {
        Map<String, String> values = new HashMap<>(VdrTuning.values(source, 500, parameters, 0));
        values.remove("FREQUENCY");
        values.remove("DELIVERY_SYSTEM");
        return values;
    }

    private static String system(char source, String parameters) {
        return VdrTuning.values(source, 500, parameters, 0).get("DELIVERY_SYSTEM");
    }

    private static String frequency(char source, int frequency) {
        return VdrTuning.values(source, frequency, "", 0).get("FREQUENCY");
    }

    @Test
    void aSatelliteServiceHasItsParameters() {
        assertEquals(
                Map.of("DELIVERY_SYSTEM", "DVBS2", "FREQUENCY", "11493000", "SYMBOL_RATE", "22000000", "POLARIZATION",
                        "HORIZONTAL",
                        "INNER_FEC", "2/3", "MODULATION", "PSK/8", "PILOT", "ON", "ROLLOFF", "35", "STREAM_ID", "4"),
                VdrTuning.values('S', 11493, "HC23M5N1O35P4S1", 22000));
    }

    @Test
    void aTerrestrialServiceHasItsParametersAndNoSymbolRate() {
        assertEquals(
                Map.ofEntries(
                        Map.entry("DELIVERY_SYSTEM", "DVBT"), Map.entry("FREQUENCY", "529833000"),
                        Map.entry("INVERSION", "OFF"),
                        Map.entry("CODE_RATE_HP", "3/4"), Map.entry("CODE_RATE_LP", "NONE"),
                        Map.entry("MODULATION", "QAM/16"),
                        Map.entry("BANDWIDTH_HZ", "8000000"), Map.entry("TRANSMISSION_MODE", "2K"),
                        Map.entry("GUARD_INTERVAL", "1/32"), Map.entry("HIERARCHY", "NONE")),
                VdrTuning.values('T', 529833, "I0C34D0M16B8T2G32Y0", 27500));
    }

    @Test
    void aCableServiceHasItsParameters() {
        assertEquals(
                Map.of("DELIVERY_SYSTEM", "DVBC/ANNEX_A", "FREQUENCY", "410000000", "SYMBOL_RATE", "6900000",
                        "MODULATION", "QAM/64",
                        "INNER_FEC", "9/10"),
                VdrTuning.values('C', 410, "C910M64", 6900));
    }

    @Test
    void everyPolarizationHasItsLetter() {
        assertEquals(Map.of("POLARIZATION", "HORIZONTAL"), parameters('S', "H"));
        assertEquals(Map.of("POLARIZATION", "VERTICAL"), parameters('S', "V"));
        assertEquals(Map.of("POLARIZATION", "LEFT"), parameters('S', "L"));
        assertEquals(Map.of("POLARIZATION", "RIGHT"), parameters('S', "R"));
    }

    @Test
    void bandwidthsAreInMegahertzBut1712() {
        Map.of("B5", "5000000", "B6", "6000000", "B7", "7000000", "B8", "8000000", "B10", "10000000", "B1712",
                "1712000", "B999", "AUTO")
                .forEach((text, value) -> assertEquals(Map.of("BANDWIDTH_HZ", value), parameters('T', text), text));
    }

    @Test
    void codeRatesAreWrittenWithoutTheirBar() {
        Map.of("0", "NONE", "12", "1/2", "23", "2/3", "34", "3/4", "35", "3/5", "45", "4/5", "56", "5/6", "78", "7/8",
                "910", "9/10",
                "999", "AUTO").forEach((number, value) -> {
                    assertEquals(Map.of("CODE_RATE_HP", value), parameters('T', "C" + number), number);
                    assertEquals(Map.of("CODE_RATE_LP", value), parameters('T', "D" + number), number);
                    assertEquals(Map.of("INNER_FEC", value), parameters('S', "C" + number), number);
                    assertEquals(Map.of("INNER_FEC", value), parameters('C', "C" + number), number);
                });
    }

    @Test
    void guardIntervalsAreFractions() {
        Map.of("G4", "1/4", "G8", "1/8", "G16", "1/16", "G32", "1/32", "G128", "1/128", "G19128", "19/128", "G19256",
                "19/256", "G999", "AUTO")
                .forEach((text, value) -> assertEquals(Map.of("GUARD_INTERVAL", value), parameters('T', text), text));
    }

    @Test
    void inversionAndPilotsAreOffOnOrAutomatic() {
        Map.of("0", "OFF", "1", "ON", "999", "AUTO").forEach((number, value) -> {
            assertEquals(Map.of("INVERSION", value), parameters('C', "I" + number), number);
            assertEquals(Map.of("PILOT", value), parameters('S', "N" + number), number);
        });
    }

    @Test
    void everyModulationHasItsNumber() {
        Map.ofEntries(
                Map.entry("M2", "QPSK"), Map.entry("M5", "PSK/8"), Map.entry("M6", "APSK/16"),
                Map.entry("M7", "APSK/32"),
                Map.entry("M10", "VSB/8"), Map.entry("M11", "VSB/16"), Map.entry("M12", "DQPSK"),
                Map.entry("M16", "QAM/16"),
                Map.entry("M32", "QAM/32"), Map.entry("M64", "QAM/64"), Map.entry("M128", "QAM/128"),
                Map.entry("M256", "QAM/256"), Map.entry("M998", "QAM/AUTO"), Map.entry("M999", "AUTO"))
                .forEach((text, value) -> assertEquals(Map.of("MODULATION", value), parameters('C', text), text));
    }

    @Test
    void aRollOffOfZeroIsAutomatic() {
        Map.of("O35", "35", "O25", "25", "O20", "20", "O0", "AUTO", "O999", "AUTO")
                .forEach((text, value) -> assertEquals(Map.of("ROLLOFF", value), parameters('S', text), text));
    }

    @Test
    void streamSystemAndAntennasOfZeroAreNone() {
        assertEquals(Map.of("STREAM_ID", "12"), parameters('S', "P12"));
        assertEquals(Map.of("STREAM_ID", "12"), parameters('T', "P12S1"));
        assertEquals(Map.of("T2_SYSTEM_ID", "7"), parameters('T', "Q7"));
        assertEquals(Map.of("MISO", "1"), parameters('T', "X1"));
        assertEquals(Map.of(), parameters('T', "P0Q0X0"));
        assertEquals(Map.of(), parameters('T', "P00"));
    }

    @Test
    void everyTransmissionModeIsInThousands() {
        Map.of("T1", "1K", "T2", "2K", "T4", "4K", "T8", "8K", "T16", "16K", "T32", "32K", "T999", "AUTO")
                .forEach((text, value) -> assertEquals(Map.of("TRANSMISSION_MODE", value), parameters('T', text),
                        text));
    }

    @Test
    void everyHierarchyHasItsNumber() {
        Map.of("Y0", "NONE", "Y1", "1", "Y2", "2", "Y4", "4", "Y999", "AUTO")
                .forEach((text, value) -> assertEquals(Map.of("HIERARCHY", value), parameters('T', text), text));
    }

    @Test
    void theGenerationDecidesAboutTheDeliverySystem() {
        assertEquals(List.of("DVBS", "DVBS", "DVBS2"), List.of(system('S', ""), system('S', "S0"), system('S', "S1")));
        assertEquals(List.of("DVBT", "DVBT", "DVBT2"), List.of(system('T', ""), system('T', "S0"), system('T', "S1")));
        assertEquals(List.of("DVBC/ANNEX_A", "DVBC/ANNEX_A"), List.of(system('C', ""), system('C', "S1")));
        assertEquals("ATSC", system('A', "M10"));
        assertEquals(Map.of(), parameters('S', "S1"));
    }

    @Test
    void aSatelliteFrequencyIsInMegahertzAndBecomesKilohertz() {
        assertEquals("11493000", frequency('S', 11493));
        assertEquals("999000", frequency('S', 999));
        assertEquals("2147483647000", frequency('S', Integer.MAX_VALUE));
    }

    @Test
    void anotherFrequencyBecomesHertzWhateverUnitItHas() {
        for (char source : "CTA".toCharArray()) {
            assertEquals(
                    List.of("410000000", "999000000", "529833000", "999999000", "538000000"),
                    List.of(frequency(source, 410), frequency(source, 999), frequency(source, 529_833),
                            frequency(source, 999_999), frequency(source, 538_000_000)));
        }
    }

    @Test
    void aSymbolRateIsInThousandsAndZeroIsNone() {
        assertEquals("2147483647000", VdrTuning.values('S', 1, "", Integer.MAX_VALUE).get("SYMBOL_RATE"));
        assertEquals(Map.of("FREQUENCY", "1000", "DELIVERY_SYSTEM", "DVBS"), VdrTuning.values('S', 1, "", 0));
        assertEquals(Map.of("FREQUENCY", "1000000", "DELIVERY_SYSTEM", "ATSC"), VdrTuning.values('A', 1, "", 6900));
    }

    @Test
    void northAmericanCableIsKnownByItsModulation() {
        assertEquals("DVBC/ANNEX_B", VdrTuning.values('A', 57, "M256", 0).get("DELIVERY_SYSTEM"));
        assertEquals("ATSC", VdrTuning.values('A', 57, "M10", 0).get("DELIVERY_SYSTEM"));
    }

    @Test
    void anUnknownLetterIsKeptByItsLetter() {
        assertEquals(Map.of("parameter Z", "3", "POLARIZATION", "VERTICAL"), parameters('S', "Z3V"));
    }

    @Test
    void aLetterWithoutItsNumberHasNoValue() {
        for (char letter : "ABCDEFGIJKMNOPQSTUWXYZ".toCharArray()) {
            assertEquals(Map.of("parameter " + letter, "without a number"), parameters('S', "" + letter));
        }
    }

    @Test
    void lettersMayBeSmall() {
        assertEquals(Map.of("POLARIZATION", "HORIZONTAL", "INNER_FEC", "3/4"), parameters('S', "hc34"));
    }

    @Test
    void whatIsNotLettersWithNumbersIsRefused() {
        for (String text : List.of("34", "3H", "H?", "H C34", "H-1", "HC3,4", "é")) {
            assertEquals(
                    "tuning parameters '" + text + "' are not letters with numbers",
                    assertThrows(IllegalArgumentException.class, () -> VdrTuning.values('S', 1, text, 0)).getMessage());
        }
        assertEquals(
                "tuning parameters 'H·' are not letters with numbers",
                assertThrows(IllegalArgumentException.class, () -> VdrTuning.values('S', 1, "H\u001b", 0))
                        .getMessage());
    }
}
