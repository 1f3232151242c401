package com.velotra.tv.tavro.bench;

import java.util.Locale;

/** Times in readable form. */
final class Times {
    private static final String[] UNITS = {"ns", "µs", "ms", "s"};

    private Times() {}

    /** Three digits and a unit. */
    static String text(double nanoseconds) {
        double value = nanoseconds;
        int unit = 0;
        while (value >= 999.5 && unit < UNITS.length - 1) {
            value /= 1000;
            unit++;
        }
        int decimals = value >= 99.5 ? 0 : value >= 9.995 ? 1 : 2;
        return String.format(Locale.ROOT, "%." + decimals + "f %s", value, UNITS[unit]);
    }

    /** Converts a time in one of Google Benchmark's units to nanoseconds. */
    static double nanoseconds(double time, String unit) {
        return switch (unit) {
            case "ns" -> time;
            case "us" -> time * 1e3;
            case "ms" -> time * 1e6;
            case "s" -> time * 1e9;
            default -> throw new IllegalArgumentException("unknown time unit '" + unit + "'");
        };
    }
}
