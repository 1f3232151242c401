package com.velotra.tv.tavro.tool.transponders;

import java.util.Map;

/**
 * The Java side's numbers for tuning parameters, by their names in scan tables.
 *
 * <p>FEC, PLP and polarization are numbered as in the delivery system descriptors of ETSI EN 300 468. The platform does
 * not define the others. Guard interval, transmission mode, code rate and hierarchy are numbered in the order of the
 * codes that the library stores for them; this class numbers the modulations.
 */
final class TunerValues {
    static final int TERRESTRIAL = 1;
    static final int CABLE = 2;
    static final int SATELLITE = 3;

    static final int STANDARD_C = 1;
    static final int STANDARD_T = 3;
    static final int STANDARD_T2 = 4;
    static final int STANDARD_S = 5;
    static final int STANDARD_S2 = 6;

    /** FEC_inner. */
    static final Map<String, Integer> FEC_INNER = Map.of(
            "1/2", 1, "2/3", 2, "3/4", 3, "5/6", 4, "7/8", 5, "8/9", 6, "3/5", 7, "4/5", 8, "9/10", 9);

    /** Code rates of terrestrial streams. */
    static final Map<String, Integer> CODE_RATE_TERRESTRIAL =
            Map.of("1/2", 2, "2/3", 3, "3/4", 4, "5/6", 5, "7/8", 6, "2/5", 7, "3/5", 8, "4/5", 9);

    /** Code rates of satellite streams. The platform has no code for 9/10. */
    static final Map<String, Integer> CODE_RATE_SATELLITE =
            Map.of("1/2", 2, "2/3", 3, "3/4", 4, "5/6", 5, "7/8", 6, "2/5", 7, "3/5", 8, "4/5", 9, "8/9", 11);

    static final Map<String, Integer> MODULATION = Map.of(
            "QPSK", 1, "PSK/8", 2, "QAM/16", 3, "QAM/32", 4, "QAM/64", 5, "QAM/128", 6, "QAM/256", 7, "APSK/16", 8,
            "APSK/32", 9);

    /** roll_off in percent. The code of 35 is 0, the same as if it were never set. */
    static final Map<String, Integer> ROLL_OFF = Map.of("35", 2, "25", 3, "20", 4);

    static final Map<String, Integer> PILOT = Map.of("OFF", 0, "ON", 1);

    /** The bandwidths that have a code, in kHz by Hz in scan tables. */
    static final Map<String, Integer> BANDWIDTH = Map.of(
            "1712000", 1712, "5000000", 5000, "6000000", 6000, "7000000", 7000, "8000000", 8000, "10000000", 10000);

    static final Map<String, Integer> GUARD_INTERVAL_T = Map.of("1/32", 2, "1/16", 3, "1/8", 4, "1/4", 5);

    static final Map<String, Integer> GUARD_INTERVAL_T2 =
            Map.of("1/32", 2, "1/16", 3, "1/8", 4, "1/4", 5, "1/128", 6, "19/128", 7, "19/256", 8);

    static final Map<String, Integer> TRANSMISSION_MODE =
            Map.of("1K", 2, "2K", 3, "4K", 4, "8K", 5, "16K", 6, "32K", 7);

    static final Map<String, Integer> HIERARCHY = Map.of("NONE", 4, "1", 5, "2", 6, "4", 7);

    /** polarization: linear horizontal and vertical, circular left and right. */
    static final Map<String, Integer> POLARIZATION = Map.of("HORIZONTAL", 0, "VERTICAL", 1, "LEFT", 2, "RIGHT", 3);

    private TunerValues() {}
}
