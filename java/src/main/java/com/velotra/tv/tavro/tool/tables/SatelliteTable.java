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

    /** Formats one satellite, one line per field. */
    static String describe(VltTvSatelliteInfo satellite) {
        Lines lines = new Lines();
        lines.add("record", satellite.getRecId());
        lines.add("position", position(satellite));
        lines.add("name", '"' + Printable.of(satellite.getName()) + '"');
        lines.add("in use", yesNo(satellite.has(SatelliteFlag.ENABLED)));
        lines.add("LNB signal detected", yesNo(satellite.has(SatelliteFlag.LNB_SIGNAL_DETECTED)));
        lines.add("LNB kind", kind(satellite));
        lines.add("antenna type", satellite.keys().contains("AntennaType") ? satellite.getAntennaType() : NONE);
        lines.add("LNB type", satellite.getLnbType());
        lines.add("low band oscillator", megahertz(satellite.getLnbLowFreq()));
        lines.add("high band oscillator", megahertz(satellite.getLnbHighFreq()));
        lines.add("high band begins at", megahertz(satellite.getLnbSwitchFreq()));
        lines.add("LNB power", satellite.getLnbPower());
        lines.add("22 kHz tone", satellite.getTone22k());
        lines.add("tone burst", burst(satellite.getToneBurst()));
        lines.add("DiSEqC type", satellite.getDiseqcType());
        lines.add("DiSEqC position", switchPosition(satellite.getDiseqcPosition()));
        lines.add("polarization", satellite.getDiseqcPolar());
        lines.add("extended DiSEqC type", satellite.getDiseqcTypeEx());
        lines.add("extended DiSEqC port", satellite.getDiseqcPositionEx());
        lines.add("MDU type", satellite.getMduType());
        lines.add("single-cable position", satellite.getUnicablePosition());
        lines.add("main tuner's user band", satellite.getSingleCableUserBandMain());
        lines.add("main tuner's band frequency", megahertz(satellite.getSingleCableBandFreqMain()));
        lines.add("sub tuner's user band", satellite.getSingleCableUserBandSub());
        lines.add("sub tuner's band frequency", megahertz(satellite.getSingleCableBandFreqSub()));
        return lines.text.toString();
    }

    private static final class Lines {
        final StringBuilder text = new StringBuilder();

        void add(String label, Object value) {
            text.append(String.format("%-30s %s%n", label, value));
        }
    }

    private static OrbitalPosition position(VltTvSatelliteInfoBase satellite) {
        return new OrbitalPosition(satellite.getOrbitPosition());
    }

    private static String yesNo(boolean flag) {
        return flag ? "yes" : "no";
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

    private static String megahertz(int frequency) {
        return frequency == 0 ? NONE : frequency + " MHz";
    }

    private static String burst(int value) {
        return switch (value) {
            case 0 -> "A";
            case 1 -> "B";
            case NO_POSITION -> NONE;
            default -> Integer.toString(value);
        };
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
