package com.velotra.tv.tavro.tool.transponders;

import com.velotra.tv.tavro.services.channellist.Printable;
import com.velotra.tv.tavro.tool.input.Malformed;
import com.velotra.tv.tavro.tool.input.Place;
import com.velotra.tv.tavro.tool.input.Source;
import com.velotra.tv.tavro.tool.input.SourceText;
import com.velotra.tv.tavro.tool.input.Text;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * A file in the DVBv5 format. A block begins with a heading in brackets and has a {@code KEY = VALUE} line for each
 * parameter. {@code #} begins a comment. A block describes a transponder or, with a {@code SERVICE_ID}, a service.
 */
public final class DvbV5File {
    /**
     * One block.
     *
     * @param place of its heading
     * @param heading the text in brackets
     * @param values parameters in the order of the file
     */
    public record Block(Place place, String heading, Map<String, String> values) {
        /** Returns whether the heading is a name, not {@code [CHANNEL]}. */
        public boolean isNamed() {
            return !heading.equalsIgnoreCase("CHANNEL");
        }

        /** Returns whether the block describes a service. */
        public boolean isService() {
            return isNamed() && values.containsKey("SERVICE_ID");
        }
    }

    // A heading may contain a number sign, and a comment may follow it.
    private static final Pattern HEADING = Pattern.compile("\\[(.*?)\\]\\s*(#.*)?");

    // The file name of a satellite scan table ends with the position, as in Astra-19.2E.
    private static final Pattern POSITION = Pattern.compile("[-_]([0-9.]+[EW])$");

    private final String position;
    private final List<Block> blocks = new ArrayList<>();
    private final List<Malformed> malformed = new ArrayList<>();
    private boolean skipping; // after a malformed heading, whose lines belong to no block

    private DvbV5File(String position) {
        this.position = position;
    }

    /** Reads a file. Malformed lines are collected, not thrown. */
    public static DvbV5File read(Source source) {
        DvbV5File file = new DvbV5File(positionIn(source.fileName()));
        file.malformed.addAll(SourceText.read(source, (place, line) -> file.take(place, line.strip())));
        return file;
    }

    /** Returns the position at the end of a file name, such as S19.2E; empty if there is none. */
    static String positionIn(String fileName) {
        Matcher matcher = POSITION.matcher(fileName);
        return matcher.find() ? "S" + matcher.group(1) : "";
    }

    /** Returns the blocks of the file. */
    public List<Block> blocks() {
        return blocks;
    }

    /** Returns the transponders of the file. */
    public List<Transponder> transponders() {
        return blocks.stream()
                .filter(block -> !block.isService())
                .map(block -> new Transponder(block.place(), block.isNamed() ? block.heading() : "", position,
                        block.values()))
                .toList();
    }

    /** Returns the position at the end of the file name, such as S19.2E; empty if there is none. */
    public String position() {
        return position;
    }

    /** Returns the malformed lines. */
    public List<Malformed> malformed() {
        return malformed;
    }

    private void take(Place place, String line) {
        if (line.startsWith("[")) {
            Matcher heading = HEADING.matcher(line);
            if (heading.matches()) {
                skipping = false;
                blocks.add(new Block(place, heading.group(1).strip(), new LinkedHashMap<>()));
                return;
            }
        }
        String text = SourceText.withoutComment(line).strip();
        if (!text.isEmpty() && (!skipping || text.startsWith("["))) {
            takeParameter(text);
        }
    }

    private void takeParameter(String text) {
        if (text.startsWith("[")) {
            skipping = true;
            throw new IllegalArgumentException(Text.excerpt(text)
                    + " is not a heading; this line and the lines up to the next heading are skipped");
        }
        int equals = text.indexOf('=');
        String key = text.substring(0, Math.max(equals, 0)).strip();
        if (key.isEmpty()) {
            throw new IllegalArgumentException(Text.excerpt(text)
                    + " is neither a heading nor of the form KEY = VALUE");
        }
        if (blocks.isEmpty()) {
            throw new IllegalArgumentException(Text.excerpt(text) + " comes before the first heading");
        }
        String value = text.substring(equals + 1).strip();
        if (value.isEmpty()) {
            throw new IllegalArgumentException(Text.excerpt(key) + " has no value");
        }
        // Files sometimes repeat a key; only a different value is reported.
        String first = blocks.get(blocks.size() - 1).values.putIfAbsent(key, value);
        if (first != null && !first.equals(value)) {
            throw new IllegalArgumentException(
                    Printable.of(key) + " is " + Text.excerpt(value) + " here and " + Text.excerpt(first)
                            + " above; the first one is used");
        }
    }
}
