package com.velotra.tv.tavro.tool.listing;

import com.velotra.tv.tavro.tool.records.Kind;
import com.velotra.tv.tavro.tool.records.Record;
import java.util.ArrayList;
import java.util.EnumMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.OptionalLong;
import java.util.Set;
import java.util.stream.Stream;

/**
 * Finds records by name or number. Every word must be part of the name, or equal to one of the numbers by which records
 * of the kind are known. Case and accents do not matter.
 */
public final class Search {
    private static final int KILO = 1000;

    private static final String POSITION = "position";
    private static final String FREQUENCY = "frequency";

    /** The names, and the numbers by which records of each kind are known. */
    private static final Map<Kind, List<Column>> COLUMNS = new EnumMap<>(Map.of(
            Kind.SERVICES, columns(Kind.SERVICES, "service_id", "lcn", "major"),
            Kind.STREAMS, columns(Kind.STREAMS, FREQUENCY, "transport_stream_id", "original_network_id", "network_id"),
            Kind.NETWORKS, columns(Kind.NETWORKS, "network_id"),
            Kind.SATELLITES, columns(Kind.SATELLITES, POSITION)));

    private final List<Word> words;

    /** A word, and the numbers that it stands for. */
    private record Word(String folded, OptionalLong number, OptionalLong position) {
        static Word of(String text) {
            // Digits alone are a number, not a position.
            OptionalLong number = text.matches("[0-9]{1,10}|0[xX][0-9a-fA-F]{1,8}")
                    ? OptionalLong.of(Long.decode(text.replaceFirst("^0+(?=[0-9])", ""))) : OptionalLong.empty();
            return new Word(Folded.of(text), number, SatelliteColumns.position(text));
        }
    }

    /** Searches for records that have all the words. */
    public Search(List<String> words) {
        this.words = words.stream().map(Word::of).toList();
    }

    /**
     * Returns what a record has of the words, such as "name" and "service id 101"; nothing if it lacks one. Looks at
     * the record itself only.
     */
    public Set<String> matches(Record record) {
        Set<String> matches = new LinkedHashSet<>();
        for (Word word : words) {
            List<String> of = matches(word, record);
            if (of.isEmpty()) {
                return Set.of();
            }
            matches.addAll(of);
        }
        return matches;
    }

    private static List<Column> columns(Kind kind, String... numbers) {
        return Stream.concat(Stream.of("name"), Stream.of(numbers))
                .map(name -> Columns.of(kind).get(name).orElseThrow()).toList();
    }

    private static List<String> matches(Word word, Record record) {
        List<String> matches = new ArrayList<>();
        for (Column column : COLUMNS.get(record.kind())) {
            if (!column.hasNumbers()) {
                if (Folded.of(column.text(record, null)).contains(word.folded)) {
                    matches.add(column.heading());
                }
            } else if (isNumber(word, column, column.number(record, null))) {
                matches.add(column.heading() + " " + column.text(record, null));
            }
        }
        return matches;
    }

    private static boolean isNumber(Word word, Column column, long value) {
        OptionalLong number = column.name().equals(POSITION) ? word.position : word.number;
        if (value == Column.NONE || number.isEmpty()) {
            return false;
        }
        // A frequency may be given in MHz.
        return number.getAsLong() == value || column.name().equals(FREQUENCY) && number.getAsLong() * KILO == value;
    }
}
