package com.velotra.tv.tavro.services.channellist;

import java.util.regex.Pattern;

/** Text that a terminal shows without obeying it. */
public final class Printable {
    // C0 with DEL and C1; the separators of lines and paragraphs; what turns the direction of the rest of a line.
    private static final Pattern CONTROL =
            Pattern.compile("[\\p{Cc}\\p{Zl}\\p{Zp}\\x{202A}-\\x{202E}\\x{2066}-\\x{2069}]");

    private Printable() {}

    /**
     * Returns the text on one line, with a dot for every control character, line separator and turn of the text's
     * direction. Texts from broadcasts and files must neither control the terminal nor look like several lines.
     */
    public static String of(String text) {
        for (int i = 0; i < text.length(); i++) {
            if (text.charAt(i) < ' ' || text.charAt(i) > '~') {
                return CONTROL.matcher(text).replaceAll("·");
            }
        }
        return text;
    }
}
