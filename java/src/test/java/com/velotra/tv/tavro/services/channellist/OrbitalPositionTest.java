package com.velotra.tv.tavro.services.channellist;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import java.util.Map;
import org.junit.jupiter.api.Test;

class OrbitalPositionTest {
    @Test
    void eastIsPositiveAndWestIsNegative() {
        Map<String, Integer> positions = Map.of(
                "S19.2E", 192, "S5.0W", -50, "S0.8W", -8, "S0.0E", 0, "S180.0E", 1800, "S180.0W", -1800, "S177.0W",
                -1770);
        positions.forEach((text, tenths) -> {
            assertEquals(new OrbitalPosition(tenths), OrbitalPosition.parse(text));
            assertEquals(text, new OrbitalPosition(tenths).toString());
        });
    }

    @Test
    void wholeDegreesMayComeWithoutTenths() {
        assertEquals(new OrbitalPosition(130), OrbitalPosition.parse("S13E"));
        assertEquals("S5.0W", OrbitalPosition.parse("S5W").toString());
    }

    @Test
    void theWholeCircleStandsForAnySatellite() {
        assertEquals(OrbitalPosition.ANY, OrbitalPosition.parse("S360E"));
        assertEquals("S360.0E", OrbitalPosition.ANY.toString());
    }

    @Test
    void otherTextIsRefusedWithWhatToWrite() {
        for (String text : new String[] {"", "S", "19.2E", "S19.2", "S19.25E", "S19,2E", "S-1E", "S180.1W", "S1234E",
                "S360W", "S360.1E", "C", "S19.2EE"}) {
            IllegalArgumentException refused = assertThrows(IllegalArgumentException.class,
                    () -> OrbitalPosition.parse(text));
            assertEquals("'" + text + "' is not an orbital position; write degrees from 0 to 180 as in S19.2E or S5W",
                    refused.getMessage());
        }
    }
}
