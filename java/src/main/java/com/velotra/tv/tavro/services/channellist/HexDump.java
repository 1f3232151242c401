package com.velotra.tv.tavro.services.channellist;

/** Bytes as text, sixteen per line: their offset in hexadecimal, the bytes, their characters. */
public final class HexDump {
    private static final int PER_LINE = 16;

    private HexDump() {}

    /** Appends the lines of some bytes. */
    public static void append(StringBuilder out, byte[] bytes) {
        for (int start = 0; start < bytes.length; start += PER_LINE) {
            StringBuilder hex = new StringBuilder();
            StringBuilder characters = new StringBuilder();
            for (int i = start; i < Math.min(start + PER_LINE, bytes.length); i++) {
                hex.append(String.format(" %02x", bytes[i]));
                characters.append(bytes[i] >= ' ' && bytes[i] <= '~' ? (char) bytes[i] : '.');
            }
            out.append(String.format("%04x %-48s  %s%n", start, hex, characters));
        }
    }
}
