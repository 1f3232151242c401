package com.velotra.tv.tavro.tool.listing;

import java.text.Normalizer;
import java.util.Locale;
import java.util.regex.Pattern;

/** Texts without case and accents, to search in. */
final class Folded {
    private static final Pattern MARKS = Pattern.compile("\\p{Mn}+");

    private Folded() {}

    /** Returns a text for comparisons in which "zwolf" equals "ZWÖLF". */
    static String of(String text) {
        for (int i = 0; i < text.length(); i++) {
            if (text.charAt(i) > '~') {
                // Upper case first, because that of ß is SS.
                String bare = MARKS.matcher(Normalizer.normalize(text, Normalizer.Form.NFKD)).replaceAll("");
                return bare.toUpperCase(Locale.ROOT).toLowerCase(Locale.ROOT);
            }
        }
        return text.toLowerCase(Locale.ROOT);
    }
}
