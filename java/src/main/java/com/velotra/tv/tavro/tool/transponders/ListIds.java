package com.velotra.tv.tavro.tool.transponders;

/**
 * The ids of the lists that an import fills, one per medium. Services, transport streams and networks of a medium go to
 * the lists with its id, satellites to the satellite list with the id of the satellite medium.
 */
public record ListIds(int terrestrial, int cable, int satellite) {
    /** Number of ids. */
    public static final int COUNT = 3;

    /** Maximum number of records in a list: record ids have 16 bits, and 0 and 65535 are not assigned. */
    public static final int MOST_RECORDS = 65_534;

    /** Returns three successive ids: terrestrial, cable, satellite. */
    public static ListIds from(int first) {
        return new ListIds(first, first + 1, first + 2);
    }

    int of(int medium) {
        return switch (medium) {
            case TunerValues.TERRESTRIAL -> terrestrial;
            case TunerValues.CABLE -> cable;
            default -> satellite;
        };
    }
}
