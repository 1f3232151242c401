package com.velotra.tv.tavro.tool.transponders;

import com.velotra.tv.tavro.tool.sources.Malformed;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.charset.CharacterCodingException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/**
 * A scan table in the DVBv5 form: blocks that begin with a heading in brackets and hold a {@code KEY = VALUE} line for each
 * tuning parameter. {@code #} begins a comment. A file that is not valid UTF-8 is read as ISO-8859-1.
 */
public final class ScanTable {
    /**
     * One transponder.
     *
     * @param file where it stands
     * @param line the line of its heading
     * @param heading the text in brackets
     * @param values its parameters, in the order of the file
     */
    public record Entry(Path file, int line, String heading, Map<String, String> values) {
        /** The file and line. */
        public String place() {
            return file + ":" + line;
        }
    }

    // A heading may have a number sign in it, and a comment behind it.
    private static final Pattern HEADING = Pattern.compile("\\[(.*?)\\]\\s*(#.*)?");

    private final List<Entry> entries = new ArrayList<>();
    private final List<Malformed> malformed = new ArrayList<>();
    private boolean skipping; // below a malformed heading, whose lines belong to no other transponder

    private ScanTable() {}

    /** The transponders of the file. */
    public List<Entry> entries() {
        return entries;
    }

    /** The lines that were left out. */
    public List<Malformed> malformed() {
        return malformed;
    }

    /** Reads a file. Malformed lines are collected, not thrown. */
    public static ScanTable read(Path file) throws IOException {
        ScanTable table = new ScanTable();
        int number = 0;
        for (String line : decode(Files.readAllBytes(file)).split("\r?\n", -1)) {
            table.take(file, ++number, line.strip());
        }
        return table;
    }

    private static String decode(byte[] bytes) {
        try {
            return StandardCharsets.UTF_8.newDecoder().decode(ByteBuffer.wrap(bytes)).toString();
        } catch (CharacterCodingException e) {
            return new String(bytes, StandardCharsets.ISO_8859_1);
        }
    }

    private void take(Path file, int number, String line) {
        Matcher heading = HEADING.matcher(line);
        if (heading.matches()) {
            skipping = false;
            entries.add(new Entry(file, number, heading.group(1).strip(), new LinkedHashMap<>()));
            return;
        }
        String text = line.replaceFirst("#.*", "").strip();
        if (!text.isEmpty() && (!skipping || text.startsWith("["))) {
            problem(text).ifPresent(reason -> malformed.add(new Malformed(file, number, reason)));
        }
    }

    /** Takes a line behind a heading, or says why it cannot be taken. */
    private Optional<String> problem(String text) {
        if (text.startsWith("[")) {
            skipping = true;
            return Optional.of("'" + text + "' is no heading; the lines up to the next one are left out with it");
        }
        String[] parts = text.split("=", 2);
        String key = parts[0].strip();
        if (parts.length < 2 || key.isEmpty()) {
            return Optional.of("'" + text + "' is neither a heading nor of the form KEY = VALUE");
        }
        if (entries.isEmpty()) {
            return Optional.of("'" + text + "' stands before the first heading");
        }
        String value = parts[1].strip();
        if (value.isEmpty()) {
            return Optional.of(key + " has no value");
        }
        // Files repeat keys now and then; that is worth a word only when they contradict themselves.
        String first = entries.get(entries.size() - 1).values.putIfAbsent(key, value);
        return first == null || first.equals(value)
                ? Optional.empty()
                : Optional.of(key + " is " + value + " here and " + first + " further up; the first counts");
    }
}
