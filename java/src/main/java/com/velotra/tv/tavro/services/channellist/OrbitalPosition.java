package com.velotra.tv.tavro.services.channellist;

import java.math.BigDecimal;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * Where a satellite stands on the geostationary arc.
 *
 * @param tenths tenths of a degree of longitude: east of Greenwich is positive, west negative
 */
public record OrbitalPosition(int tenths) {
    /** 360 degrees east, which stands for any satellite that a steerable dish is turned to. */
    public static final OrbitalPosition ANY = new OrbitalPosition(3600);

    private static final Pattern TEXT = Pattern.compile("S([0-9]{1,3}(?:\\.[0-9])?)([EW])");
    private static final int HALF_CIRCLE = 1800;

    /**
     * Returns the position that the usual text form names, as in {@code S19.2E} or {@code S5W}; {@code S360E} is
     * {@link #ANY}.
     *
     * @throws IllegalArgumentException if the text is not a position from 180 degrees west to 180 degrees east
     */
    public static OrbitalPosition parse(String text) {
        Matcher matcher = TEXT.matcher(text);
        if (matcher.matches()) {
            int tenths = new BigDecimal(matcher.group(1)).movePointRight(1).intValueExact();
            OrbitalPosition position = new OrbitalPosition(matcher.group(2).equals("E") ? tenths : -tenths);
            if (tenths <= HALF_CIRCLE || position.equals(ANY)) {
                return position;
            }
        }
        throw new IllegalArgumentException(
                "'" + Printable.of(text)
                + "' is not an orbital position; write degrees from 0 to 180 as in S19.2E or S5W");
    }

    /** Returns the text form, always with its tenths. */
    @Override
    public String toString() {
        int size = Math.abs(tenths);
        return "S" + size / 10 + "." + size % 10 + (tenths < 0 ? "W" : "E");
    }
}
