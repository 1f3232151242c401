package com.velotra.tv.tavro.tool.transponders;

import com.velotra.tv.tavro.tool.input.Place;
import java.util.Map;

/**
 * One transponder of a file.
 *
 * @param place where it is in the file
 * @param name its name, or empty
 * @param position the position of its satellite, as in S19.2E, or empty
 * @param values its tuning parameters under their DVBv5 names, in the order of the file
 */
public record Transponder(Place place, String name, String position, Map<String, String> values) {
    /** The delivery system of what older files call ATSC: with a cable modulation it is North American cable. */
    public static String atscSystem(String modulation) {
        return modulation.startsWith("QAM/") ? "DVBC/ANNEX_B" : "ATSC";
    }
}
