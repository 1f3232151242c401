package com.velotra.tv.tavro.services.channellist;

import java.io.IOException;
import java.io.UncheckedIOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.Set;
import java.util.TreeSet;

/** The tables of docs/porting.md that say what natives do with bad input. */
final class BadInputDocument {
    /** The heading above the table of identifiers. */
    static final String IDENTIFIERS = "Bad identifiers";

    private BadInputDocument() {}

    /** The identifiers of the first table; one of them is null. */
    static List<String> identifiers() {
        return table(IDENTIFIERS).stream().map(row -> parsed(row.get(0))).toList();
    }

    /** The rows of the first table below a heading, without their header; cells are stripped. */
    static List<List<String>> table(String heading) {
        List<List<String>> rows = new ArrayList<>();
        boolean below = false;
        for (String line : lines()) {
            if (line.matches("#+ .*")) {
                below = line.replaceFirst("#+ ", "").equals(heading);
            } else if (below && line.startsWith("|")) {
                String cells = line.substring(1, line.lastIndexOf('|'));
                rows.add(Arrays.stream(cells.split("\\|", -1)).map(String::strip).toList());
            } else if (!rows.isEmpty()) {
                break;
            }
        }
        if (rows.size() < 3) {
            throw new IllegalStateException("no table below '" + heading + "' in " + file());
        }
        return rows.subList(2, rows.size());
    }

    /**
     * The natives of a row, with their classes. {@code kinds} is {@code all} or names kinds of list; {@code natives}
     * has signatures in backticks, of which each kind has at least one.
     */
    static Set<String> natives(String kinds, String natives) {
        Set<String> signatures = Set.copyOf(quoted(natives));
        Set<String> names = new TreeSet<>();
        for (String kind : kinds.equals("all") ? BadInputCalls.KINDS.keySet() : Set.of(kinds.split(", "))) {
            List<String> found = BadInputCalls.natives(BadInputCalls.list(BadInputCalls.KINDS.get(kind))).stream()
                    .filter(method -> signatures.contains(BadInputCalls.signature(method)))
                    .map(BadInputCalls::fullName)
                    .toList();
            if (found.isEmpty()) {
                throw new IllegalStateException(kind + " lists have none of " + natives);
            }
            names.addAll(found);
        }
        return names;
    }

    /** What stands between the backticks of a cell. */
    static List<String> quoted(String cell) {
        String[] parts = cell.split("`", -1);
        List<String> quoted = new ArrayList<>();
        for (int i = 1; i < parts.length; i += 2) {
            quoted.add(parts[i]);
        }
        return quoted;
    }

    /** An identifier as it is written in a cell: {@code null}, or a Java literal in backticks. */
    private static String parsed(String cell) {
        String literal = quoted(cell).get(0);
        return literal.equals("null") ? null : unescaped(literal.substring(1, literal.length() - 1));
    }

    private static String unescaped(String literal) {
        StringBuilder text = new StringBuilder();
        for (int i = 0; i < literal.length(); i++) {
            if (literal.startsWith("\\u", i)) {
                text.append((char) Integer.parseInt(literal.substring(i + 2, i + 6), 16));
                i += 5;
            } else {
                text.append(literal.charAt(i));
            }
        }
        return text.toString();
    }

    private static List<String> lines() {
        try {
            return Files.readAllLines(file());
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }

    private static Path file() {
        return Path.of(System.getProperty("tavro.document"));
    }
}
