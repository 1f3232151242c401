package com.velotra.tv.tavro.tool.input;

import java.nio.ByteBuffer;
import java.nio.charset.CharacterCodingException;
import java.nio.charset.Charset;
import java.nio.charset.StandardCharsets;
import java.util.ArrayList;
import java.util.List;

/**
 * The lines of a text file. UTF-8 and UTF-16 are known by their byte order marks, UTF-16 without one by its zero bytes;
 * every other file is UTF-8, but for the lines that are not: they are read as ISO-8859-1, which older files are written
 * in.
 */
public final class SourceText {
    /** Takes one line after the other. */
    public interface Taker {
        /**
         * @param place where the line is
         * @param line its text without blanks at its end
         * @throws IllegalArgumentException when the line cannot be read; the message is the reason
         */
        void take(Place place, String line);
    }

    private static final char BYTE_ORDER_MARK = '\uFEFF';

    private SourceText() {}

    /** Hands out the lines of a source. Returns those that the taker refused. */
    public static List<Malformed> read(Source source, Taker taker) {
        List<Malformed> malformed = new ArrayList<>();
        int number = 0;
        for (String line : source.lines()) {
            Place place = new Place(source.name(), ++number);
            try {
                taker.take(place, line.stripTrailing());
            } catch (IllegalArgumentException e) {
                malformed.add(new Malformed(place, e.getMessage()));
            }
        }
        return malformed;
    }

    /**
     * A number of a line.
     *
     * @throws IllegalArgumentException when it is not one from {@code least} to {@code most}, naming {@code what} it
     *         was meant to be
     */
    public static int number(String text, int radix, int least, int most, String what) {
        try {
            int value = Integer.parseInt(text, radix);
            if (value >= least && value <= most) {
                return value;
            }
        } catch (NumberFormatException e) {
            // Falls through to the message.
        }
        throw new IllegalArgumentException(
                what + " " + Text.excerpt(text) + " is not a number from " + least + " to " + most);
    }

    /** The lines of a file; a line ends with LF, CR LF or CR. */
    static List<String> lines(byte[] bytes) {
        Charset wide = wideCharset(bytes);
        if (wide != null) {
            String text = new String(bytes, wide);
            return List.of(withoutMark(text).split("\r\n|\n|\r", -1));
        }
        List<String> lines = new ArrayList<>();
        for (int start = 0; start < bytes.length; ) {
            int end = start;
            while (end < bytes.length && bytes[end] != '\n' && bytes[end] != '\r') {
                end++;
            }
            String line = decode(bytes, start, end - start);
            lines.add(lines.isEmpty() ? withoutMark(line) : line);
            boolean both = end + 1 < bytes.length && bytes[end] == '\r' && bytes[end + 1] == '\n';
            start = end + (both ? 2 : 1);
        }
        return lines;
    }

    private static String withoutMark(String text) {
        return !text.isEmpty() && text.charAt(0) == BYTE_ORDER_MARK ? text.substring(1) : text;
    }

    /** UTF-16 of either byte order, or null for text of single bytes. */
    private static Charset wideCharset(byte[] bytes) {
        if (bytes.length < 2) {
            return null;
        }
        // A text begins with an ASCII character: a comment, a heading, a code or a name of the West.
        if (bytes[0] == (byte) 0xFE && bytes[1] == (byte) 0xFF || bytes[0] == 0 && bytes[1] != 0) {
            return StandardCharsets.UTF_16BE;
        }
        if (bytes[0] == (byte) 0xFF && bytes[1] == (byte) 0xFE || bytes[0] != 0 && bytes[1] == 0) {
            return StandardCharsets.UTF_16LE;
        }
        return null;
    }

    private static String decode(byte[] bytes, int start, int length) {
        String latin = new String(bytes, start, length, StandardCharsets.ISO_8859_1);
        if (isAscii(bytes, start, length)) { // most lines: either way the same
            return latin;
        }
        try {
            return StandardCharsets.UTF_8.newDecoder().decode(ByteBuffer.wrap(bytes, start, length)).toString();
        } catch (CharacterCodingException e) {
            return latin;
        }
    }

    private static boolean isAscii(byte[] bytes, int start, int length) {
        for (int i = start; i < start + length; i++) {
            if (bytes[i] < 0) {
                return false;
            }
        }
        return true;
    }

    /** The line up to its comment, which {@code #} begins. */
    public static String withoutComment(String line) {
        int comment = line.indexOf('#');
        return comment < 0 ? line : line.substring(0, comment);
    }
}
