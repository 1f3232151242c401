package com.velotra.tv.tavro.tool.transponders;

/**
 * The lists that an import fills, one per medium. Services, transport streams and networks of a medium go to the lists
 * of that id, satellites to the satellite list with the id of the satellite medium.
 */
public record ListIds(int terrestrial, int cable, int satellite) {
    /** How many ids {@link #from} takes. */
    public static final int COUNT = 3;

    /** Records that a list can hold: record ids have 16 bits, and the two ends are not given out. */
    public static final int MOST_RECORDS = 65_534;

    /** Three lists in a row: terrestrial, cable, satellite. */
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
