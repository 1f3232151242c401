package com.velotra.tv.tavro.tool.records;

import java.nio.charset.Charset;
import java.nio.charset.StandardCharsets;
import java.util.Arrays;
import java.util.HexFormat;

/**
 * The text of a field's bytes: modified UTF-8, filled up with NULs. Bytes that are not such a text are written as
 * {@code 0x} and their hexadecimal digits, so that nothing is lost.
 */
final class RecordText {
    private static final String HEX = "0x";

    // Modified UTF-8, as JNI has it, except for the NUL, which ends a text.
    private static final Charset CHARSET = Charset.forName("CESU-8");

    private RecordText() {}

    /** Returns the text of a field that holds texts of at most {@code most} bytes. */
    static String of(byte[] bytes, int most) {
        int length = 0;
        boolean ascii = true;
        while (length < bytes.length && bytes[length] != 0) {
            ascii &= bytes[length] > 0;
            length++;
        }
        String text = new String(bytes, 0, length, ascii ? StandardCharsets.ISO_8859_1 : CHARSET);
        boolean exact = length <= most && onlyZeros(bytes, length) && (ascii || isExact(text, bytes, length));
        return exact && !text.startsWith(HEX) ? text : HEX + HexFormat.of().formatHex(bytes);
    }

    /**
     * Returns the text for people: what {@link #of} returns, but without the bytes after the NUL. The library leaves
     * the end of a longer text there when it writes a shorter one.
     */
    static String shown(byte[] bytes, int most) {
        byte[] text = bytes.clone();
        int end = 0;
        while (end < text.length && text[end] != 0) {
            end++;
        }
        Arrays.fill(text, end, text.length, (byte) 0);
        String shown = of(text, most);
        return shown.startsWith(HEX) ? of(bytes, most) : shown;
    }

    private static boolean onlyZeros(byte[] bytes, int from) {
        for (int i = from; i < bytes.length; i++) {
            if (bytes[i] != 0) {
                return false;
            }
        }
        return true;
    }

    private static boolean isExact(String text, byte[] bytes, int length) {
        byte[] again = text.getBytes(CHARSET);
        return Arrays.equals(again, 0, again.length, bytes, 0, length);
    }

    /**
     * Returns the bytes of a text that {@link #of} returned.
     *
     * @throws IllegalArgumentException with a message for the user if they cannot be those of the field
     */
    static byte[] parse(String text, String label, int width, int most) {
        if (text.startsWith(HEX)) {
            return Arrays.copyOf(checked(text, hex(text, label), label, width), width);
        }
        byte[] bytes = text.getBytes(CHARSET);
        if (text.indexOf('\0') >= 0) {
            throw new IllegalArgumentException("the " + label + " cannot contain a NUL character");
        }
        if (!new String(bytes, CHARSET).equals(text)) {
            throw new IllegalArgumentException("the " + label + " cannot contain half of a surrogate pair");
        }
        return Arrays.copyOf(checked(text, bytes, label, most), width);
    }

    private static byte[] checked(String text, byte[] bytes, String label, int most) {
        if (bytes.length > most) {
            throw new IllegalArgumentException(
                    "'" + text + "' is too long for the " + label + ": at most " + most + " bytes");
        }
        return bytes;
    }

    private static byte[] hex(String text, String label) {
        try {
            return HexFormat.of().parseHex(text, HEX.length(), text.length());
        } catch (IllegalArgumentException e) {
            throw new IllegalArgumentException("'" + text + "' cannot be the " + label + ": 0x is followed by pairs of "
                    + "hexadecimal digits", e);
        }
    }
}
