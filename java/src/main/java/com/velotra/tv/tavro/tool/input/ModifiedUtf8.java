package com.velotra.tv.tavro.tool.input;

/** The encoding of texts in records: one to three bytes for each UTF-16 unit. */
public final class ModifiedUtf8 {
    private ModifiedUtf8() {}

    /** Returns the number of bytes of a text. */
    public static int bytes(String text) {
        return text.chars().map(ModifiedUtf8::bytes).sum();
    }

    /** Returns the longest beginning of a text, in whole characters, that fits into {@code most} bytes. */
    public static String cut(String text, int most) {
        int used = 0;
        for (int i = 0; i < text.length(); ) {
            int next = text.offsetByCodePoints(i, 1);
            used += bytes(text.substring(i, next));
            if (used > most) {
                return text.substring(0, i);
            }
            i = next;
        }
        return text;
    }

    private static int bytes(int unit) {
        return unit != 0 && unit < 0x80 ? 1 : unit < 0x800 ? 2 : 3;
    }
}
