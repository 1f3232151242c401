package com.velotra.tv.tavro.services.channellist;

import java.io.IOException;
import java.io.UncheckedIOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.HashSet;
import java.util.List;
import java.util.Map;
import java.util.Optional;
import java.util.Set;
import java.util.regex.Pattern;
import java.util.stream.Collectors;

/** The table of what natives hold when they return: {@code | natives | hold | how many | until | why |}. */
final class HeldDocument {
    static final String FILE = "docs/held-by-natives.md";

    private record Row(String line, Pattern natives, Pattern holds, int most) {}

    private final List<Row> rows = new ArrayList<>();
    private final Map<String, List<Row>> rowsOfNatives = new HashMap<>();
    private final Set<Row> used = new HashSet<>();

    HeldDocument() {
        try {
            Files.readAllLines(Path.of(System.getProperty("tavro.heldDocument"))).stream()
                    .filter(line -> line.startsWith("| `")).forEach(this::add);
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
        if (rows.isEmpty()) {
            throw new AssertionError(FILE + " has no table");
        }
    }

    private void add(String line) {
        String[] columns = line.split("\\s*\\|\\s*");
        int most = columns[3].equals("many") ? Integer.MAX_VALUE : Integer.parseInt(columns[3]);
        rows.add(new Row(line, pattern(columns[1]), pattern(columns[2]), most));
    }

    /** Matches each of the texts in backticks; {@code *} stands for any text. */
    private static Pattern pattern(String column) {
        return Pattern.compile(Pattern.compile("`([^`]*)`").matcher(column).results()
                .map(text -> "\\Q" + text.group(1).replace("*", "\\E.*\\Q") + "\\E")
                .collect(Collectors.joining("|")));
    }

    /** What a native holds that no row allows, or more of it than a row allows. */
    List<String> excess(String nativeName, List<String> held) {
        List<String> excess = new ArrayList<>();
        List<Row> allowed = rowsOfNatives.computeIfAbsent(nativeName, name -> rows.stream()
                .filter(row -> row.natives().matcher(name).matches()).toList());
        Map<Row, Integer> taken = new HashMap<>();
        for (String thing : held) {
            Optional<Row> allowing = allowed.stream().filter(row -> row.holds().matcher(thing).matches()
                    && taken.getOrDefault(row, 0) < row.most()).findFirst();
            allowing.ifPresentOrElse(row -> taken.merge(row, 1, Integer::sum), () -> excess.add(thing));
        }
        used.addAll(taken.keySet());
        return excess;
    }

    /** The rows that were never used. */
    List<String> unused() {
        return rows.stream().filter(row -> !used.contains(row)).map(Row::line).toList();
    }
}
