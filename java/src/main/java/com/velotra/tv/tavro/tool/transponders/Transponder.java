package com.velotra.tv.tavro.tool.transponders;

import com.velotra.tv.tavro.tool.input.Place;
import java.util.Map;

/**
 * One transponder of a file.
 *
 * @param place in the file
 * @param name its name; empty if it has none
 * @param position of its satellite, such as S19.2E; empty if it has none
 * @param values tuning parameters under their DVBv5 names, in the order of the file
 */
public record Transponder(Place place, String name, String position, Map<String, String> values) {
    /** Returns the delivery system of what older files call ATSC: cable (annex B) if the modulation is QAM. */
    public static String atscSystem(String modulation) {
        return modulation.startsWith("QAM/") ? "DVBC/ANNEX_B" : "ATSC";
    }
}
