package com.velotra.tv.tavro.tool.input;

import com.velotra.tv.tavro.services.channellist.Printable;

/** Texts for messages and terminals. */
public final class Text {
    // First and last code points that take two columns: Hangul Jamo; CJK, kana and Yi; Hangul syllables; CJK
    // compatibility; full-width forms; pictographs; the supplementary ideographs (Unicode standard annex 11).
    private static final int[][] WIDE = {
        {0x1100, 0x115F}, {0x2E80, 0x303E}, {0x3041, 0xA4CF}, {0xAC00, 0xD7A3}, {0xF900, 0xFAFF}, {0xFE30, 0xFE6F},
        {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6}, {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};

    private static final int EXCERPT_COLUMNS = 60;

    private Text() {}

    /** Returns the beginning of a text from a file for a message: quoted, printable and short. */
    public static String excerpt(String text) {
        return "'" + fit(Printable.of(text), EXCERPT_COLUMNS) + "'";
    }

    /** Returns a number with its noun, such as "1 record" or "2 records". */
    public static String count(int number, String thing) {
        return number + " " + (number == 1 ? thing : thing + "s");
    }

    /** Returns the number of columns of a text on a terminal. */
    public static int width(String text) {
        return text.codePoints().map(Text::width).sum();
    }

    /** Returns the text if it fits into {@code columns}, otherwise its beginning and an ellipsis. */
    public static String fit(String text, int columns) {
        // Characters may have no width, so the number of characters does not tell whether the text fits.
        int used = 0;
        int end = 0; // of the part that fits before an ellipsis
        for (int i = 0; i < text.length(); ) {
            int codePoint = text.codePointAt(i);
            used += width(codePoint);
            if (used > columns) {
                return text.substring(0, end) + "…";
            }
            i += Character.charCount(codePoint);
            end = used < columns ? i : end;
        }
        return text;
    }

    private static int width(int codePoint) {
        switch (Character.getType(codePoint)) {
            case Character.NON_SPACING_MARK, Character.ENCLOSING_MARK, Character.FORMAT -> {
                return 0;
            }
            default -> {
                for (int[] range : WIDE) {
                    if (codePoint >= range[0] && codePoint <= range[1]) {
                        return 2;
                    }
                }
                return 1;
            }
        }
    }
}
