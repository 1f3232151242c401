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
 * A file in the DVBv5 form: blocks that begin with a heading in brackets and hold a {@code KEY = VALUE} line for each
 * parameter. {@code #} begins a comment. A block is a transponder, or a service on one when it has a
 * {@code SERVICE_ID}.
 */
public final class DvbV5File {
    /**
     * One block.
     *
     * @param place where its heading is
     * @param heading the text in brackets
     * @param values its parameters, in the order of the file
     */
    public record Block(Place place, String heading, Map<String, String> values) {
        /** Whether the heading is a name; {@code [CHANNEL]} names nothing. */
        public boolean isNamed() {
            return !heading.equalsIgnoreCase("CHANNEL");
        }

        /** Whether it describes a service. */
        public boolean isService() {
            return isNamed() && values.containsKey("SERVICE_ID");
        }
    }

    // A heading may have a number sign in it, and a comment after it.
    private static final Pattern HEADING = Pattern.compile("\\[(.*?)\\]\\s*(#.*)?");

    // The names of scan tables end with the satellite's position, as in Astra-19.2E.
    private static final Pattern POSITION = Pattern.compile("[-_]([0-9.]+[EW])$");

    private final String position;
    private final List<Block> blocks = new ArrayList<>();
    private final List<Malformed> malformed = new ArrayList<>();
    private boolean skipping; // below a malformed heading, whose lines belong to no other block

    private DvbV5File(String position) {
        this.position = position;
    }

    /** Reads a file. Malformed lines are collected, not thrown. */
    public static DvbV5File read(Source source) {
        DvbV5File file = new DvbV5File(positionIn(source.fileName()));
        file.malformed.addAll(SourceText.read(source, (place, line) -> file.take(place, line.strip())));
        return file;
    }

    /** The position at the end of a file's name, as in S19.2E, or empty. */
    static String positionIn(String fileName) {
        Matcher matcher = POSITION.matcher(fileName);
        return matcher.find() ? "S" + matcher.group(1) : "";
    }

    /** The blocks of the file. */
    public List<Block> blocks() {
        return blocks;
    }

    /** The blocks that describe transponders. */
    public List<Transponder> transponders() {
        return blocks.stream()
                .filter(block -> !block.isService())
                .map(block -> new Transponder(block.place(), block.isNamed() ? block.heading() : "", position,
                        block.values()))
                .toList();
    }

    /** The position that the file's name ends with, as in S19.2E, or empty. */
    public String position() {
        return position;
    }

    /** The lines that were left out. */
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
        // Files repeat keys now and then; only a contradiction is worth a message.
        String first = blocks.get(blocks.size() - 1).values.putIfAbsent(key, value);
        if (first != null && !first.equals(value)) {
            throw new IllegalArgumentException(
                    Printable.of(key) + " is " + Text.excerpt(value) + " here and " + Text.excerpt(first)
                            + " above; the first one is used");
        }
    }
}
