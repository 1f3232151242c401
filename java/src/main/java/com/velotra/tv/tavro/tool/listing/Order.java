package com.velotra.tv.tavro.tool.listing;

import com.velotra.tv.tavro.tool.records.Record;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Comparator;
import java.util.List;

/** Sorts records by columns. Missing values come last; records that are equal keep their order. */
public final class Order {
    /**
     * A column to sort by.
     *
     * @param falling whether the largest value comes first
     */
    public record Key(Column column, boolean falling) {}

    private Order() {}

    /** Returns the records in order of the first key, those that are equal in order of the second, and so on. */
    public static List<Record> sort(List<Record> records, List<Key> keys, References references) {
        Integer[] places = new Integer[records.size()];
        Arrays.setAll(places, i -> i);
        // Backwards, because sorting is stable.
        for (int i = keys.size() - 1; i >= 0; i--) {
            Arrays.sort(places, comparator(records, keys.get(i), references));
        }
        List<Record> sorted = new ArrayList<>(places.length);
        for (int place : places) {
            sorted.add(records.get(place));
        }
        return sorted;
    }

    /** Compares places in {@code records}. Each value is computed once. */
    private static Comparator<Integer> comparator(List<Record> records, Key key, References references) {
        Column column = key.column();
        if (column.hasNumbers()) {
            long[] values = records.stream().mapToLong(record -> column.number(record, references)).toArray();
            Comparator<Integer> rising = Comparator.comparingLong(place -> values[place]);
            return Comparator.<Integer, Boolean>comparing(place -> values[place] == Column.NONE)
                    .thenComparing(key.falling() ? rising.reversed() : rising);
        }
        String[] values = records.stream().map(record -> column.text(record, references))
                .map(text -> text == null ? null : Folded.of(text)).toArray(String[]::new);
        Comparator<String> rising = Comparator.naturalOrder();
        return Comparator.comparing(place -> values[place],
                Comparator.nullsLast(key.falling() ? rising.reversed() : rising));
    }
}
