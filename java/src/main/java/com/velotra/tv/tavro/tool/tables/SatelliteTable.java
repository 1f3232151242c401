package com.velotra.tv.tavro.tool.tables;

import com.velotra.tv.tavro.services.channellist.OrbitalPosition;
import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.services.channellist.SatelliteFlag;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfo;
import com.velotra.tv.tavro.services.channellist.VltTvSatelliteInfoBase;
import java.util.ArrayList;
import java.util.List;

/** Satellites as text. */
public final class SatelliteTable {
    private static final int BURST_A = 5;
    private static final int BURST_B = 6;
    private static final int NO_POSITION = 255;
    private static final String NONE = "-";

    private SatelliteTable() {}

    /** Formats one satellite in one line. */
    public static String summary(VltTvSatelliteInfo satellite) {
        return String.format("'%s' at %s, LNB %s, DiSEqC %s", Printable.of(satellite.getName()), position(satellite),
                lnb(satellite), switchPosition(satellite.getDiseqcPosition()));
    }

    private static OrbitalPosition position(VltTvSatelliteInfoBase satellite) {
        return new OrbitalPosition(satellite.getOrbitPosition());
    }

    // From the flags, which every record has. A record without any of them has no antenna type.
    private static String kind(VltTvSatelliteInfoBase satellite) {
        List<String> kinds = new ArrayList<>();
        if (satellite.has(SatelliteFlag.LNB_UNIVERSAL)) {
            kinds.add("universal");
        }
        if (satellite.has(SatelliteFlag.LNB_SINGLE_CABLE)) {
            kinds.add("single cable");
        }
        if (satellite.has(SatelliteFlag.LNB_SINGLE_CABLE_2)) {
            kinds.add("single cable, second generation");
        }
        return kinds.isEmpty() ? NONE : String.join(", ", kinds);
    }

    private static String lnb(VltTvSatelliteInfoBase satellite) {
        int low = satellite.getLnbLowFreq();
        int high = satellite.getLnbHighFreq();
        String oscillators = low == 0 && high == 0 ? "" : high == 0 ? low + " MHz" : low + "/" + high + " MHz";
        String kind = kind(satellite);
        return kind.equals(NONE) && !oscillators.isEmpty() ? oscillators : (kind + " " + oscillators).strip();
    }

    private static String switchPosition(int value) {
        return switch (value) {
            case BURST_A -> "burst A";
            case BURST_B -> "burst B";
            case NO_POSITION -> NONE;
            default -> "port " + value;
        };
    }
}
