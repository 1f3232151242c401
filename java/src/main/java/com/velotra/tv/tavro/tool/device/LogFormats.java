package com.velotra.tv.tavro.tool.device;

import java.io.IOException;
import java.io.InputStream;
import java.io.UncheckedIOException;
import java.nio.charset.StandardCharsets;
import java.util.ArrayList;
import java.util.HashSet;
import java.util.List;
import java.util.Set;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/** The tags of the library and the formats of its log lines, from log-lines.txt, which is made from its sources. */
final class LogFormats {
    /** What lines without a tag mostly begin with: no other program writes that. */
    private static final String BRIDGES = "[jni_VltTvList_Init]";
    private static final Pattern CONVERSION = Pattern.compile("%0?\\d*(\\.\\*)?([dusxX])");

    // A value, as in "path = %s", and not the name of a function, as in "[%s]: ".
    private static final Pattern BEFORE_VALUE = Pattern.compile("[=:] ?$");

    /** How a line begins, and whether it has a text that may have line feeds. */
    private record Format(Pattern start, boolean hasText) {}

    private final Set<String> tags = new HashSet<>();
    private final List<Format> tagged = new ArrayList<>();
    private final List<Format> untagged = new ArrayList<>();

    LogFormats() {
        for (String line : resource().lines().toList()) {
            String[] words = line.split(" ", 2);
            switch (words[0]) {
                case "tag" -> tags.add(words[1]);
                case "tagged" -> tagged.add(format(words[1]));
                default -> untagged.add(format(words[1]));
            }
        }
    }

    /** Returns whether only the library uses this tag. */
    boolean hasTag(String tag) {
        return tags.contains(tag);
    }

    /** Returns whether no program but the library writes such a line, whatever its tag. */
    static boolean isUnmistakable(String text) {
        return text.startsWith(BRIDGES);
    }

    /** Returns whether a line of the library with this tag, or with none if the tag is not the library's, is so. */
    boolean matches(String tag, String text) {
        return formats(tag).stream().anyMatch(format -> format.start.matcher(text).lookingAt());
    }

    /** Returns whether more lines of the same text may follow this one. */
    boolean mayContinue(String tag, String text) {
        return formats(tag).stream().anyMatch(format -> format.hasText && format.start.matcher(text).lookingAt());
    }

    private List<Format> formats(String tag) {
        return hasTag(tag) ? tagged : untagged;
    }

    /** A format up to its first text that may have line feeds: logcat prints each line of a text on its own. */
    private static Format format(String format) {
        StringBuilder pattern = new StringBuilder();
        Matcher conversion = CONVERSION.matcher(format);
        int from = 0;
        while (conversion.find()) {
            String before = format.substring(from, conversion.start());
            from = conversion.end();
            boolean text = conversion.group(2).equals("s");
            if (text && BEFORE_VALUE.matcher(before).find()) {
                return new Format(Pattern.compile(pattern + Pattern.quote(before.stripTrailing())), true);
            }
            pattern.append(Pattern.quote(before))
                    .append(text ? ".*" : conversion.group(2).equals("d") ? "-?\\d+" : "[0-9a-fA-F]+");
        }
        return new Format(Pattern.compile(pattern + Pattern.quote(format.substring(from)) + "\\s*$"), false);
    }

    private static String resource() {
        try (InputStream text = LogFormats.class.getResourceAsStream("log-lines.txt")) {
            return new String(text.readAllBytes(), StandardCharsets.UTF_8);
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }
}
