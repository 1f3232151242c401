package com.velotra.tv.tavro.tool.records;

import java.util.HexFormat;

/** Numbers in records and as text. */
final class RecordNumber {
    private static final String HEX = "0x";

    private RecordNumber() {}

    /** Returns the little-endian unsigned number. */
    static long get(byte[] record, int offset, int width) {
        long number = 0;
        for (int i = width - 1; i >= 0; i--) {
            number = number << 8 | record[offset + i] & 0xFF;
        }
        return number;
    }

    static void put(long number, byte[] record, int offset, int width) {
        for (int i = 0; i < width; i++) {
            record[offset + i] = (byte) (number >> 8 * i);
        }
    }

    /** Formats an unsigned number with all digits of its width. */
    static String hex(long number, int width) {
        return HEX + HexFormat.of().toHexDigits(number, 2 * width);
    }

    /**
     * Parses a decimal number, or a hexadecimal one after 0x.
     *
     * @throws NumberFormatException if it is neither
     */
    static long parse(String text) {
        boolean negative = text.startsWith("-");
        int sign = negative ? 1 : 0;
        boolean hex = text.startsWith(HEX, sign);
        int digits = sign + (hex ? HEX.length() : 0);
        if (digits == text.length() || Character.digit(text.charAt(digits), 16) < 0) {
            throw new NumberFormatException(text); // also for a second sign
        }
        long size = Long.parseLong(text, digits, text.length(), hex ? 16 : 10);
        return negative ? -size : size;
    }
}
