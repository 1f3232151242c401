package com.velotra.tv.tavro.tool.input;

import java.nio.ByteBuffer;
import java.nio.charset.CharacterCodingException;
import java.nio.charset.Charset;
import java.nio.charset.StandardCharsets;
import java.util.ArrayList;
import java.util.List;
import java.util.Optional;
import java.util.OptionalInt;

/**
 * Reads text files by line. UTF-16 is recognized by its byte order mark or by its zero bytes. Every other file is read
 * as UTF-8, except for lines that are not valid UTF-8: they are read as ISO-8859-1, the encoding of older files.
 */
public final class SourceText {
    /** Receives the lines one by one. */
    public interface Taker {
        /**
         * @param place of the line
         * @param line its text without trailing blanks
         * @throws IllegalArgumentException if the line is malformed; the message is the reason
         */
        void take(Place place, String line);
    }

    private static final char BYTE_ORDER_MARK = '\uFEFF';

    private SourceText() {}

    /** Passes the lines of a source to a taker. Returns those that the taker refused. */
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
     * Returns a number in a line.
     *
     * @param what the number is, for the message
     * @throws IllegalArgumentException if it is not a number from {@code least} to {@code most}
     */
    public static int number(String text, int radix, int least, int most, String what) {
        try {
            int value = Integer.parseInt(text, radix);
            if (value >= least && value <= most) {
                return value;
            }
        } catch (NumberFormatException e) {
            // Continues with the message.
        }
        throw new IllegalArgumentException(
                what + " " + Text.excerpt(text) + " is not a number from " + least + " to " + most);
    }

    /** Returns the lines of a file; a line ends with LF, CR LF or CR. */
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

    /** Returns the text of a file: UTF-16, or UTF-8, or ISO-8859-1 if it is not valid UTF-8. */
    static String text(byte[] bytes) {
        Charset wide = wideCharset(bytes);
        return withoutMark(wide != null ? new String(bytes, wide) : decode(bytes, 0, bytes.length));
    }

    /** Returns the first line that is not UTF-8, from 1; empty if there is none, or if the text is UTF-16. */
    static OptionalInt lineNotUnicode(byte[] bytes) {
        if (wideCharset(bytes) != null) {
            return OptionalInt.empty();
        }
        int line = 1;
        int start = 0;
        for (int end = 0; end <= bytes.length; end++) {
            if (end == bytes.length || bytes[end] == '\n') {
                if (utf8(bytes, start, end - start).isEmpty()) {
                    return OptionalInt.of(line);
                }
                line++;
                start = end + 1;
            }
        }
        return OptionalInt.empty();
    }

    private static String withoutMark(String text) {
        return !text.isEmpty() && text.charAt(0) == BYTE_ORDER_MARK ? text.substring(1) : text;
    }

    /** Returns UTF-16 of either byte order, or null for text of single bytes. */
    private static Charset wideCharset(byte[] bytes) {
        if (bytes.length < 2) {
            return null;
        }
        // All formats begin with an ASCII character, so one of the first two bytes of UTF-16 is zero.
        if (bytes[0] == (byte) 0xFE && bytes[1] == (byte) 0xFF || bytes[0] == 0 && bytes[1] != 0) {
            return StandardCharsets.UTF_16BE;
        }
        if (bytes[0] == (byte) 0xFF && bytes[1] == (byte) 0xFE || bytes[0] != 0 && bytes[1] == 0) {
            return StandardCharsets.UTF_16LE;
        }
        return null;
    }

    private static String decode(byte[] bytes, int start, int length) {
        return utf8(bytes, start, length)
                .orElseGet(() -> new String(bytes, start, length, StandardCharsets.ISO_8859_1));
    }

    /** Returns a text; empty if it is not valid UTF-8. */
    private static Optional<String> utf8(byte[] bytes, int start, int length) {
        if (isAscii(bytes, start, length)) { // the common case
            return Optional.of(new String(bytes, start, length, StandardCharsets.ISO_8859_1));
        }
        try {
            return Optional.of(
                    StandardCharsets.UTF_8.newDecoder().decode(ByteBuffer.wrap(bytes, start, length)).toString());
        } catch (CharacterCodingException e) {
            return Optional.empty();
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

    /** Returns the line without its comment, which begins with {@code #}. */
    public static String withoutComment(String line) {
        int comment = line.indexOf('#');
        return comment < 0 ? line : line.substring(0, comment);
    }
}
