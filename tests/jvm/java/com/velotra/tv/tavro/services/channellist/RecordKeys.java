package com.velotra.tv.tavro.services.channellist;

import java.io.IOException;
import java.io.UncheckedIOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.TreeMap;
import java.util.stream.Stream;

/** The keys of the record objects as the native side has them, printed by the program record_layouts. */
final class RecordKeys {
    /** Bytes of the record that a key's value goes to, in records of these views; an empty list is every record. */
    record Target(int offset, int width, List<Integer> views, String codes) {
        boolean in(int view) {
            return views.isEmpty() || views.contains(view);
        }
    }

    /** One key. The kind is number, code, flag, text, record id or rule: a rule of its own. */
    record Key(String name, String field, String descriptor, String kind, int mask, List<Target> targets) {}

    private final Map<String, Map<String, Key>> keys = new TreeMap<>();
    private final Map<String, Map<Integer, Integer>> codes = new TreeMap<>();

    RecordKeys() {
        try (Stream<String> lines = Files.lines(Path.of(System.getProperty("tavro.recordKeys")))) {
            lines.skip(1).forEach(this::add); // the first line names the columns
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }

    private void add(String line) {
        String[] columns = line.split("\t", -1);
        if (columns[0].equals("code")) {
            codes.computeIfAbsent(columns[1], name -> new LinkedHashMap<>())
                    .put(Integer.valueOf(columns[2]), Integer.valueOf(columns[3]));
            return;
        }
        Key key = keys.computeIfAbsent(columns[1], record -> new LinkedHashMap<>())
                .computeIfAbsent(columns[2], name -> new Key(
                        name, columns[3], columns[4], columns[5], Integer.parseInt(columns[7]), new ArrayList<>()));
        List<Integer> views = columns[11].isEmpty()
                ? List.of()
                : Arrays.stream(columns[11].split(",")).map(Integer::valueOf).toList();
        key.targets.add(new Target(Integer.parseInt(columns[9]), Integer.parseInt(columns[10]), views, columns[12]));
    }

    /** The keys of a kind: service, transport stream, network or satellite. */
    List<Key> of(String kind) {
        return List.copyOf(keys.get(kind).values());
    }

    /** Stored codes by Java value. */
    Map<Integer, Integer> codes(String table) {
        return codes.get(table);
    }
}
