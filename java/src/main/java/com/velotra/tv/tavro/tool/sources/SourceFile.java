package com.velotra.tv.tavro.tool.sources;

import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.charset.CharacterCodingException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;

/** Files that say one thing a line. A line that is not valid UTF-8 is read as ISO-8859-1, which older files are written in. */
public final class SourceFile {
    /** Takes one line after the other. */
    public interface Taker {
        /**
         * @param number the line's number, from 1
         * @param line its text without blanks at its end
         * @throws IllegalArgumentException when the line cannot be read; the message is the reason
         */
        void take(int number, String line);
    }

    private SourceFile() {}

    /** Hands out the lines of a file. Returns those that the taker refused. */
    public static List<Malformed> read(Path file, Taker taker) throws IOException {
        List<Malformed> malformed = new ArrayList<>();
        byte[] bytes = Files.readAllBytes(file);
        int line = 0;
        for (int start = 0; start < bytes.length; ) {
            int end = start;
            while (end < bytes.length && bytes[end] != '\n') {
                end++;
            }
            line++;
            try {
                taker.take(line, decode(ByteBuffer.wrap(bytes, start, end - start)).stripTrailing());
            } catch (IllegalArgumentException e) {
                malformed.add(new Malformed(file, line, e.getMessage()));
            }
            start = end + 1;
        }
        return malformed;
    }

    /**
     * A number of a line.
     *
     * @throws IllegalArgumentException when it is none from {@code least} to {@code most}, naming {@code what} it was meant to be
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
                what + " '" + text + "' is not a number from " + least + " to " + most);
    }

    private static String decode(ByteBuffer line) {
        try {
            return StandardCharsets.UTF_8.newDecoder().decode(line.duplicate()).toString();
        } catch (CharacterCodingException e) {
            return StandardCharsets.ISO_8859_1.decode(line).toString();
        }
    }
}
